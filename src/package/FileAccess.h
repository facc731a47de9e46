#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace quillon {

// The system's one way to files. A name goes to the package once that is open (package mode), and to the disk,
// unchanged, until then (disk mode); nothing falls back from one to the other. No locks: callers run under the effect's
// entry mutex. Running out of memory throws.

// The whole file; empty when it is absent, empty or damaged.
std::vector<std::byte> ReadFileBytes(const std::wstring& name);

// The text of the file up to its first zero byte, in the bytes that it holds, with CR LF read as LF in disk mode.
// Empty when the package has no such file; the four characters "popa" when the disk has none.
std::string ReadFileText(const std::wstring& name);

// Set together by BlobReader when it has opened a package; null in disk mode.
extern std::vector<std::byte> (*FileBytesHook)(const std::wstring& name);
extern std::string (*FileTextHook)(const std::wstring& name);

}  // namespace quillon
