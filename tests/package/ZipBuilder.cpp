#include "ZipBuilder.h"

namespace quillon::test {

namespace {

std::string Word16(std::uint64_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}
std::string Word32(std::uint64_t value) {
    return Word16(value) + Word16(value >> 16);
}

std::string SizesOf(const ZipEntry& entry) {
    return Word16(0) + Word16(entry.method) + Word32(0) + Word32(entry.crc) + Word32(entry.packedSize) +
           Word32(entry.size) + Word16(entry.name.size()) + Word16(0);
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
    ZipEntry entry = Stored(name, "\x01" + Word16(content.size()) + Word16(~content.size()) + content);
    entry.method = 8;
    entry.crc = CrcOf(content);
    entry.size = static_cast<std::uint32_t>(content.size());
    return entry;
}

std::string ZipBuilder::bytes() const {
    std::string archive, directory;
    for (const ZipEntry& entry : entries) {
        directory += Word32(entry.signature) + Word16(20) + Word16(20) + SizesOf(entry) + Word16(0) + Word16(disk) +
                     Word16(0) + Word32(entry.attributes) + Word32(archive.size() + entry.localAt) + entry.name;
        archive += Word32(0x04034B50) + Word16(20) + SizesOf(entry) + entry.name + entry.content;
    }
    const std::uint64_t directoryAt = archive.size();
    archive += directory + beforeEnd + Word32(0x06054B50) + Word16(disk) + Word16(directoryDisk) +
               Word16(entries.size() + extraEntriesHere) + Word16(entries.size() + extraEntries) +
               Word32(directory.size() + extraDirectoryBytes) + Word32(directoryAt + extraDirectoryAt) +
               Word16(comment.size()) + comment;
    return archive;
}

}  // namespace quillon::test
