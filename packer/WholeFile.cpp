#include "packer/WholeFile.h"

#include <cerrno>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>

#include "packer/PackageError.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

// A file beside the output, gone again unless it takes the output's place.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& output) : path(output) {
        fs::path name = ".";
        name += output.filename();
        name += "." + std::to_string(std::random_device{}()) + ".tmp";
        path.replace_filename(name);
    }
    ~TemporaryFile() {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    fs::path path;
};

}  // namespace

std::vector<std::byte> ReadWholeFile(const fs::path& path) {
    std::error_code failure;
    if (!fs::exists(path, failure)) throw PackageError(path.string() + ": not found; see the name");
    if (!fs::is_regular_file(path, failure)) throw PackageError(path.string() + ": not a file; take it away");
    const std::uintmax_t size = fs::file_size(path, failure);
    if (!failure && size >= 0xFFFFFFFF) throw PackageError(path.string() + ": too large; it must stay below 4 GiB");
    std::vector<std::byte> bytes(failure ? 0 : static_cast<std::size_t>(size));
    std::ifstream file(path, std::ios::binary);
    if (failure || !file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())))
        throw PackageError(path.string() + ": cannot be read; see its permissions");
    return bytes;
}

std::error_code WriteWholeFile(const fs::path& path, std::span<const std::byte> bytes,
                               std::optional<fs::perms> permissions) {
    const TemporaryFile temporary(path);
    errno = 0;
    std::ofstream file(temporary.path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    if (!file) return {errno != 0 ? errno : EIO, std::generic_category()};
    std::error_code error;
    if (permissions) fs::permissions(temporary.path, *permissions, error);
    if (!error) fs::rename(temporary.path, path, error);
    return error;
}

}  // namespace quillon
