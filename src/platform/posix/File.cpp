#include "platform/File.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "platform/WideText.h"

namespace quillon {

FileHandle OpenFileForReading(const std::wstring& name) {
    FileHandle file(std::fopen(NarrowToBytes(name).c_str(), "rbe"));
    // A folder opens, and then has no end to seek.
    struct stat status {};
    if (file && (fstat(fileno(file.get()), &status) != 0 || S_ISDIR(status.st_mode))) file.reset();
    return file;
}

std::int64_t FileLength(std::FILE* file) {
    const off_t length = fseeko(file, 0, SEEK_END) == 0 ? ftello(file) : -1;
    std::rewind(file);
    return length;
}

bool IsHiddenFile(const std::filesystem::path&) {
    return false;
}

std::error_code FlushToDisk(const std::filesystem::path& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    // EINVAL: a file system without a disk.
    const bool isDone = file >= 0 && (fsync(file) == 0 || errno == EINVAL);
    const std::error_code error = isDone ? std::error_code() : std::error_code(errno, std::generic_category());
    if (file >= 0) close(file);
    return error;
}

}  // namespace quillon
