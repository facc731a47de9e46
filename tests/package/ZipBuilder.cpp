#include "ZipBuilder.h"

namespace quillon::test {

namespace {

std::string word16(std::uint64_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}
std::string word32(std::uint64_t value) {
    return word16(value) + word16(value >> 16);
}

std::string sizesOf(const ZipEntry& entry) {
    return word16(entry.flags) + word16(entry.method) + word32(0) + word32(entry.crc) + word32(entry.packedSize) +
           word32(entry.size) + word16(entry.name.size()) + word16(0);
}

}  // namespace

std::uint32_t CrcOf(const std::string& bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = crc & 1 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
    }
    return ~crc;
}

ZipEntry Stored(const std::string& name, const std::string& content) {
    const auto size = static_cast<std::uint32_t>(content.size());
    return {.name = name, .content = content, .crc = CrcOf(content), .size = size, .packedSize = size};
}

ZipEntry Deflated(const std::string& name, const std::string& content) {
    ZipEntry entry = Stored(name, "\x01" + word16(content.size()) + word16(~content.size()) + content);
    entry.method = 8;
    entry.crc = CrcOf(content);
    entry.size = static_cast<std::uint32_t>(content.size());
    return entry;
}

std::string ZipBuilder::bytes() const {
    std::string archive, directory;
    for (const ZipEntry& entry : entries) {
        directory += word32(entry.signature) + word16(20) + word16(20) + sizesOf(entry) + word16(0) + word16(disk) +
                     word16(0) + word32(entry.attributes) + word32(archive.size() + entry.localAt) + entry.name;
        archive += word32(entry.localSignature) + word16(20) + sizesOf(entry) + entry.name + entry.content;
    }
    const std::uint64_t directoryAt = archive.size();
    archive += directory + beforeEnd + word32(0x06054B50) + word16(disk) + word16(directoryDisk) +
               word16(entries.size() + extraEntriesHere) + word16(entries.size() + extraEntries) +
               word32(directory.size() + extraDirectoryBytes) + word32(directoryAt + extraDirectoryAt) +
               word16(comment.size()) + comment;
    return archive;
}

}  // namespace quillon::test
