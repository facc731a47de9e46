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

}  // namespace quillon
