#include "packer/WholeFile.h"

#include <cstdint>
#include <fstream>

#include "packer/PackageError.h"

namespace quillon {

std::vector<std::byte> ReadWholeFile(const std::filesystem::path& path) {
    std::error_code failure;
    if (!std::filesystem::exists(path, failure)) throw PackageError(path.string() + ": not found; see the name");
    if (!std::filesystem::is_regular_file(path, failure))
        throw PackageError(path.string() + ": not a file; take it away");
    const std::uintmax_t size = std::filesystem::file_size(path, failure);
    if (!failure && size >= 0xFFFFFFFF) throw PackageError(path.string() + ": too large; it must stay below 4 GiB");
    std::vector<std::byte> bytes(failure ? 0 : static_cast<std::size_t>(size));
    std::ifstream file(path, std::ios::binary);
    if (failure || !file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())))
        throw PackageError(path.string() + ": cannot be read; see its permissions");
    return bytes;
}

}  // namespace quillon
