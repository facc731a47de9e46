#include "frei0r/Report.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace quillon::frei0r {

void Report(const std::string& plugin, const std::string& words) {
    const char* const setting = std::getenv("QUILLON_VERBOSE");
    if (!setting || std::string_view(setting) != "1") return;
    static std::string last;
    if (words == last) return;
    last = words;
    std::fprintf(stderr, "quillon: %s: %s\n", plugin.c_str(), words.c_str());
}

}  // namespace quillon::frei0r
