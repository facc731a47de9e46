#pragma once

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

}  // namespace quillon
