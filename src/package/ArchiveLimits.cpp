#include "package/ArchiveLimits.h"

#include <algorithm>
#include <cstdint>

#include "platform/LittleEndian.h"

namespace quillon {

namespace {

constexpr std::uint32_t kEndSignature = 0x06054B50, kEntrySignature = 0x02014B50, kLocator64Signature = 0x07064B50;
constexpr std::size_t kEndBytes = 22, kEntryBytes = 46, kLocator64Bytes = 20;
constexpr std::size_t kLongestComment = 0xFFFF;
constexpr std::uint32_t kSizeIsElsewhere = 0xFFFFFFFF;

constexpr auto& word16 = LoadLittle<std::uint16_t>;
constexpr auto& word32 = LoadLittle<std::uint32_t>;

std::optional<std::size_t> findEndRecord(std::span<const std::byte> data) {
    if (data.size() < kEndBytes) return std::nullopt;
    const std::size_t last = data.size() - kEndBytes;
    for (std::size_t behind = 0; behind <= std::min(last, kLongestComment); ++behind)
        if (word32(data, last - behind) == kEndSignature) return last - behind;
    return std::nullopt;
}

bool entriesAreSound(std::span<const std::byte> directory, std::size_t count) {
    for (; count > 0; --count) {
        if (directory.size() < kEntryBytes || word32(directory, 0) != kEntrySignature) return false;
        for (const std::size_t field : {20, 24, 42})  // compressed size, size, place of the local header
            if (word32(directory, field) == kSizeIsElsewhere) return false;
        const std::size_t nameAndMore = word16(directory, 28) + word16(directory, 30) + word16(directory, 32);
        if (directory.size() - kEntryBytes < nameAndMore) return false;
        directory = directory.subspan(kEntryBytes + nameAndMore);
    }
    return true;
}

}  // namespace

std::optional<std::size_t> LengthOfSoundArchive(std::span<const std::byte> data) {
    const auto found = findEndRecord(data);
    if (!found) return std::nullopt;
    const std::size_t end = *found;
    if (end >= kLocator64Bytes && word32(data, end - kLocator64Bytes) == kLocator64Signature) return std::nullopt;

    const std::uint32_t disk = word16(data, end + 4), directoryDisk = word16(data, end + 6);
    const std::size_t entriesHere = word16(data, end + 8), entries = word16(data, end + 10);
    const std::uint64_t directoryBytes = word32(data, end + 12), directoryAt = word32(data, end + 16);
    const std::size_t archiveBytes = end + kEndBytes;
    if (disk != directoryDisk || disk > 1 || entriesHere != entries) return std::nullopt;
    if (directoryBytes < entries * kEntryBytes || directoryAt + directoryBytes > archiveBytes) return std::nullopt;
    if (!entriesAreSound(data.subspan(directoryAt, directoryBytes), entries)) return std::nullopt;
    return archiveBytes;
}

}  // namespace quillon
