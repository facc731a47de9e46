#include "platform/File.h"

namespace quillon {

FileHandle OpenFileForReading(const std::wstring& name) {
    std::FILE* file = nullptr;
    _wfopen_s(&file, name.c_str(), L"rb");
    return FileHandle(file);
}

std::int64_t FileLength(std::FILE* file) {
    const std::int64_t length = _fseeki64(file, 0, SEEK_END) == 0 ? _ftelli64(file) : -1;
    std::rewind(file);
    return length;
}

}  // namespace quillon
