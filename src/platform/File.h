#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace quillon {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

// Opens the file of this name for reading its bytes as they stand. Null when it cannot be opened; a folder cannot.
FileHandle OpenFileForReading(const std::wstring& name);

// The file's length in bytes; its place is the start afterwards. Negative when it cannot be told.
std::int64_t FileLength(std::FILE* file);

}  // namespace quillon
