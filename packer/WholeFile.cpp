#include "packer/WholeFile.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <string>
#include <system_error>

#include "packer/FileError.h"
#include "platform/File.h"
#include "platform/TemporaryPath.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

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

// What the name leads to, whether that exists or not: links stay, and the file is replaced where it is.
fs::path FollowLinks(fs::path path) {
    constexpr int kMostLinks = 40;  // a circle is reported by whoever opens it
    std::error_code error;
    for (int i = 0; i < kMostLinks && fs::is_symlink(fs::symlink_status(path, error)); ++i)
        path = path.parent_path() / fs::read_symlink(path, error);
    return path;
}

// The folder's permissions are all that renaming needs, so that the file's own are looked at first: those that it has,
// since some users may write everything, and those that the system grants.
void RequireWritable(const fs::path& path, fs::perms permissions) {
    constexpr fs::perms kWrite = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    if ((permissions & kWrite) == fs::perms::none) throw FileError(path.string(), "is write-protected");
    errno = 0;
    if (!std::ofstream(path, std::ios::binary | std::ios::app))
        throw FileError(path.string(), "cannot be written: " + LastError().message());
}

std::error_code Replace(const fs::path& path, std::span<const std::byte> bytes) {
    try {
        TemporaryPath temporary(path.parent_path(), TemporaryPath::Kind::file);
        std::error_code error = Write(temporary.path(), bytes);
        if (!error) error = FlushToDisk(temporary.path());
        return error ? error : temporary.moveTo(path);
    } catch (const fs::filesystem_error& error) {
        return error.code();
    }
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
    const fs::path target = FollowLinks(path);
    std::error_code error;
    const fs::file_status status = fs::status(target, error);
    const bool isFile = fs::is_regular_file(status);
    if (isFile) RequireWritable(path, status.permissions());
    // Pipes and devices have no content that could be replaced.
    error = isFile || !fs::exists(status) ? Replace(target, bytes) : Write(target, bytes);
    if (error) throw FileError(path.string(), "cannot be written: " + error.message());
}

}  // namespace quillon
