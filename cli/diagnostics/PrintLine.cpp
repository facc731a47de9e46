#include "cli/diagnostics/PrintLine.h"

#include <string>

namespace quillon::cli {

void PrintLine(std::FILE* file, std::string_view text) {
    // One call: a terminal shows what comes at once, and a letter's bytes must not come apart.
    const std::string line = std::string(text) + "\n";
    std::fwrite(line.data(), 1, line.size(), file);
}

}  // namespace quillon::cli
