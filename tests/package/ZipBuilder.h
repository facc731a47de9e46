#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillon::test {

// One entry of an archive, every field of which can be wrong. By default a stored file that can be fetched.
struct ZipEntry {
    std::string name;
    std::string content;           // as stored in the archive
    std::uint16_t method = 0;      // 8: `content` is deflated
    std::uint32_t crc = 0;         // of the file; see CrcOf
    std::uint32_t size = 0;        // of the file
    std::uint32_t packedSize = 0;  // of `content`
    std::uint32_t attributes = 0;  // 0x10: a directory
    std::uint32_t localAt = 0;     // place of the local header, counted from where it is
    std::uint32_t signature = 0x02014B50;
};

// Bit by bit, so that it shares nothing with the archive library.
std::uint32_t CrcOf(const std::string& bytes);

// An entry that is whole: stored, or deflated as one block without compression.
ZipEntry Stored(const std::string& name, const std::string& content);
ZipEntry Deflated(const std::string& name, const std::string& content);

// An archive as another program would write it: no descriptors, sizes in the local headers too.
struct ZipBuilder {
    std::vector<ZipEntry> entries = {};
    std::string beforeEnd = {};  // between the central directory and the end record
    std::string comment = {};
    std::uint16_t disk = 0, directoryDisk = 0;
    int extraEntriesHere = 0, extraEntries = 0;  // added to the true counts
    std::int64_t extraDirectoryBytes = 0, extraDirectoryAt = 0;

    std::string bytes() const;
};

}  // namespace quillon::test
