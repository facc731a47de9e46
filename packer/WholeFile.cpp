#include "packer/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <random>
#include <string>
#include <system_error>

#include "packer/FileError.h"
#include "platform/File.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

// A file beside the output that is removed at the end, unless it has taken the output's name. Its own name does not
// grow with that of the output, which may be as long as the file system allows.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& output)
        : path(fs::path(output).replace_filename(".quillon-" + std::to_string(std::random_device{}()) + ".tmp")) {}
    ~TemporaryFile() {
        std::error_code ignored;
        fs::remove(path, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    const fs::path path;
};

std::error_code LastError() {
    return {errno != 0 ? errno : EIO, std::generic_category()};
}

std::error_code Write(const fs::path& path, std::span<const std::byte> bytes) {
    errno = 0;
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file ? std::error_code() : LastError();
}

[[noreturn]] void FailForSize(const fs::path& path, std::uint64_t mostBytes) {
    throw FileError(path.string(), "has more than " + std::to_string(mostBytes) + " bytes", "use a smaller file");
}

}  // namespace

std::vector<std::byte> ReadWholeFile(const fs::path& path, std::uint64_t mostBytes) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (status.type() == fs::file_type::not_found) throw FileError(path.string(), "no such file", "check the name");
    if (fs::is_directory(status)) throw FileError(path.string(), "is a folder", "name a file");
    const std::uintmax_t expected = fs::is_regular_file(status) ? fs::file_size(path, error) : 0;
    if (!error && expected > mostBytes) FailForSize(path, mostBytes);

    errno = 0;
    std::ifstream file(path, std::ios::binary);
    // One byte more than the file should have, so that the first read already finds its end.
    std::vector<std::byte> bytes(error ? 1 : static_cast<std::size_t>(expected) + 1);
    std::size_t filled = 0;
    while (file.read(reinterpret_cast<char*>(bytes.data() + filled),
                     static_cast<std::streamsize>(bytes.size() - filled))) {
        filled = bytes.size();
        if (filled > mostBytes) FailForSize(path, mostBytes);
        bytes.resize(static_cast<std::size_t>(
            std::min<std::uint64_t>(std::max<std::size_t>(2 * filled, 1 << 16), mostBytes + 1)));
    }
    if (!file.is_open() || file.bad())
        throw FileError(path.string(), "cannot be read: " + LastError().message(), "check its permissions");
    bytes.resize(filled + static_cast<std::size_t>(file.gcount()));
    return bytes;
}

void WriteWholeFile(const fs::path& path, std::span<const std::byte> bytes) {
    const TemporaryFile temporary(path);
    std::error_code error = Write(temporary.path, bytes);
    if (!error) error = FlushToDisk(temporary.path);
    if (!error) fs::rename(temporary.path, path, error);
    if (error) throw FileError(path.string(), "cannot be written: " + error.message());
}

}  // namespace quillon
