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

constexpr auto& kWord16 = LoadLittle<std::uint16_t>;
constexpr auto& kWord32 = LoadLittle<std::uint32_t>;

std::optional<std::size_t> FindEndRecord(std::span<const std::byte> data) {
    if (data.size() < kEndBytes) return std::nullopt;
    const std::size_t last = data.size() - kEndBytes;
    for (std::size_t after = 0; after <= std::min(last, kLongestComment); ++after)
        if (kWord32(data, last - after) == kEndSignature) return last - after;
    return std::nullopt;
}

bool EntriesAreSound(std::span<const std::byte> directory, std::size_t count) {
    for (; count > 0; --count) {
        if (directory.size() < kEntryBytes || kWord32(directory, 0) != kEntrySignature) return false;
        for (const std::size_t field : {20, 24, 42})  // compressed size, size, place of the local header
            if (kWord32(directory, field) == kSizeIsElsewhere) return false;
        const std::size_t nameAndMore = kWord16(directory, 28) + kWord16(directory, 30) + kWord16(directory, 32);
        if (directory.size() - kEntryBytes < nameAndMore) return false;
        directory = directory.subspan(kEntryBytes + nameAndMore);
    }
    return true;
}

}  // namespace

std::optional<std::size_t> LengthOfSoundArchive(std::span<const std::byte> data) {
    const auto found = FindEndRecord(data);
    if (!found) return std::nullopt;
    const std::size_t end = *found;
    if (end >= kLocator64Bytes && kWord32(data, end - kLocator64Bytes) == kLocator64Signature) return std::nullopt;

    const std::uint32_t disk = kWord16(data, end + 4), directoryDisk = kWord16(data, end + 6);
    const std::size_t entriesHere = kWord16(data, end + 8), entries = kWord16(data, end + 10);
    const std::uint64_t directoryBytes = kWord32(data, end + 12), directoryAt = kWord32(data, end + 16);
    const std::size_t archiveBytes = end + kEndBytes;
    if (disk != directoryDisk || disk > 1 || entriesHere != entries) return std::nullopt;
    if (directoryBytes < entries * kEntryBytes || directoryAt + directoryBytes > archiveBytes) return std::nullopt;
    if (!EntriesAreSound(data.subspan(directoryAt, directoryBytes), entries)) return std::nullopt;
    return archiveBytes;
}

}  // namespace quillon
