#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace quillon {

// An archive in memory, open for reading. Not safe for use by two threads at once.
class ZipArchive {
public:
    // Null when the data is no sound archive; see ArchiveLimits.h for what is asked of one. The data is read in place:
    // it must stay where it is, unchanged, for as long as the archive lives.
    static std::unique_ptr<ZipArchive> Open(std::span<const std::byte> data);
    ~ZipArchive();
    ZipArchive(const ZipArchive&) = delete;
    ZipArchive& operator=(const ZipArchive&) = delete;

    // The whole file whose stored name equals `name`, case of ASCII letters ignored. Empty when there is none, and when
    // it cannot be had: a directory, encrypted, packed by another method than deflate, cut, its checksum wrong.
    std::vector<std::byte> Read(const std::string& name);

private:
    ZipArchive();

    struct Reader;
    std::unique_ptr<Reader> reader;
};

}  // namespace quillon
