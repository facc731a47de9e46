#include "cli/system/FileEnding.h"

#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

std::string LowerEnding(const std::filesystem::path& path) {
    return InLowerCase(path.extension().string());
}

}  // namespace quillon::cli
