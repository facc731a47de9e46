#include "package/FileAccess.h"

#include <cstdint>
#include <limits>
#include <stdexcept>

#include "platform/File.h"

namespace quillon {

std::vector<std::byte> (*FileBytesHook)(const std::wstring& name) = nullptr;
std::string (*FileTextHook)(const std::wstring& name) = nullptr;

namespace {

// The text of a file that the disk does not have.
constexpr const char* kNoTextFile = "popa";

// All bytes of the file. A length that 32 bits with a sign cannot hold throws as an allocation that fails.
std::vector<std::byte> ReadWhole(std::FILE* file) {
    const std::int64_t length = FileLength(file);
    if (length > std::numeric_limits<std::int32_t>::max()) throw std::length_error("file of 2 GiB or more");
    std::vector<std::byte> bytes(length > 0 ? static_cast<std::size_t>(length) : 0);
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file));
    return bytes;
}

}  // namespace

std::vector<std::byte> ReadFileBytes(const std::wstring& name) {
    if (FileBytesHook) return FileBytesHook(name);
    const FileHandle file = OpenFileForReading(name);
    return file ? ReadWhole(file.get()) : std::vector<std::byte>();
}

std::string ReadFileText(const std::wstring& name) {
    if (FileTextHook) return FileTextHook(name);
    const FileHandle file = OpenFileForReading(name);
    if (!file) return kNoTextFile;

    // As Windows reads a text, on every system, so that a file reads alike: a line may end in two characters, and the
    // old end-of-file mark ends it.
    std::string text;
    for (const std::byte byte : ReadWhole(file.get())) {
        const char character = std::to_integer<char>(byte);
        if (character == '\0' || character == '\x1A') break;
        if (character == '\n' && text.ends_with('\r')) text.pop_back();
        text.push_back(character);
    }
    return text;
}

}  // namespace quillon
