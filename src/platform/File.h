#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

namespace quillon {

// An open file, which the handle's end closes.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

// Opens the file of this name to read its bytes unchanged. Null when it cannot be opened, and for a folder.
FileHandle OpenFileForReading(const std::wstring& name);

// The file's length in bytes, negative when it has none. The next read is at the file's start.
std::int64_t FileLength(std::FILE* file);

// Whether the system hides the file by an attribute, as Windows can.
bool IsHiddenFile(const std::filesystem::path& path);

// Waits until the content of a closed file is on the disk, so that it survives a loss of power. Gives the reason when
// the system cannot promise that.
std::error_code FlushToDisk(const std::filesystem::path& path);

}  // namespace quillon
