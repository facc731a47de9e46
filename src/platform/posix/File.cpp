#include "platform/File.h"

#include <sys/stat.h>

#include "platform/WideText.h"

namespace quillon {

FileHandle OpenFileForReading(const std::wstring& name) {
    FileHandle file(std::fopen(NarrowToBytes(name).c_str(), "rbe"));
    // A folder opens, and then has no end that could be sought.
    struct stat status {};
    if (file && (fstat(fileno(file.get()), &status) != 0 || S_ISDIR(status.st_mode))) file.reset();
    return file;
}

std::int64_t FileLength(std::FILE* file) {
    const off_t length = fseeko(file, 0, SEEK_END) == 0 ? ftello(file) : -1;
    std::rewind(file);
    return length;
}

}  // namespace quillon
