#include "cli/import/Sources.h"

#include <cstddef>
#include <vector>

#include "cli/diagnostics/ToolError.h"
#include "cli/import/SourceText.h"
#include "packer/FileError.h"
#include "packer/WholeFile.h"

namespace quillon::cli {

namespace {

std::string ReadUpTo(const std::filesystem::path& path, std::uint64_t most) {
    try {
        const std::vector<std::byte> bytes = ReadWholeFile(path, most);
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    } catch (const FileError& error) {
        throw Fault(error.place, error.fault, error.remedy);
    }
}

}  // namespace

std::string ReadShaderSource(const std::filesystem::path& path) {
    return NormalizeSource(ReadUpTo(path, 8u << 20));
}

std::string ReadSourceBytes(const std::filesystem::path& path) {
    return ReadUpTo(path, 256u << 20);
}

}  // namespace quillon::cli
