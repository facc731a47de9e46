#include "platform/File.h"

#include <windows.h>

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

bool IsHiddenFile(const std::filesystem::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_HIDDEN) != 0;
}

std::error_code FlushToDisk(const std::filesystem::path& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const bool isDone = file != INVALID_HANDLE_VALUE && FlushFileBuffers(file);
    const std::error_code error =
        isDone ? std::error_code() : std::error_code(static_cast<int>(GetLastError()), std::system_category());
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    return error;
}

}  // namespace quillon
