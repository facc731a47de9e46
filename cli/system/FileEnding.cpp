#include "cli/system/FileEnding.h"

namespace quillon::cli {

std::string LowerEnding(const std::filesystem::path& path) {
    std::string ending = path.extension().string();
    for (char& c : ending) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    return ending;
}

}  // namespace quillon::cli
