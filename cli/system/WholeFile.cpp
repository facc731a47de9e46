#include "cli/system/WholeFile.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <string>
#include <system_error>

#include "cli/diagnostics/ToolError.h"
#include "packer/WholeFile.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

}  // namespace

std::vector<std::byte> ReadWholeFile(const fs::path& path) {
    std::error_code ignored;
    if (fs::is_directory(path, ignored)) {
        throw Fault(fmt::format("{}: is a folder; a file is needed here", path.string()));
    }
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::vector<std::byte> bytes;
    std::size_t filled = 0;
    while (file) {
        bytes.resize(filled + std::max<std::size_t>(filled, 1 << 16));
        file.read(reinterpret_cast<char*>(bytes.data() + filled), static_cast<std::streamsize>(bytes.size() - filled));
        filled += static_cast<std::size_t>(file.gcount());
    }
    if (!file.is_open() || file.bad()) {
        throw Fault(fmt::format("{}: cannot be read: {}; check the name", path.string(), std::strerror(errno)));
    }
    bytes.resize(filled);
    return bytes;
}

void WriteWholeFile(const fs::path& path, std::span<const std::byte> bytes) {
    if (const std::error_code error = quillon::WriteWholeFile(path, bytes)) {
        throw Fault(
            fmt::format("{}: cannot be written: {}; choose another place with -o", path.string(), error.message()));
    }
}

}  // namespace quillon::cli
