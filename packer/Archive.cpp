#include "packer/Archive.h"

#include <miniz.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>

#include "package/KeySchedule.h"
#include "packer/FileError.h"
#include "platform/LittleEndian.h"

namespace quillon {

namespace {

constexpr std::size_t kTooLarge = 0xFFFFFFFF;

struct Writer {
    mz_zip_archive zip{};

    ~Writer() { mz_zip_writer_end(&zip); }
};

// The library stamps each file with the present moment, in its local header and in the central directory.
void EraseDates(std::span<std::byte> archive) {
    constexpr std::size_t kEndBytes = 22, kEntryBytes = 46;
    const auto word16 = [archive](std::size_t at) { return LoadLittle<std::uint16_t>(archive, at); };
    const auto word32 = [archive](std::size_t at) { return LoadLittle<std::uint32_t>(archive, at); };
    const std::size_t end = archive.size() - kEndBytes;
    std::size_t entry = word32(end + 16);
    for (std::uint32_t count = word16(end + 10); count > 0; --count) {
        const std::size_t local = word32(entry + 42);
        StoreLittle<std::uint32_t>(archive, local + 10, 0);
        StoreLittle<std::uint32_t>(archive, entry + 12, 0);
        entry += kEntryBytes + word16(entry + 28) + word16(entry + 30) + word16(entry + 32);
    }
}

[[noreturn]] void FailForSize() {
    throw FileError("", "the package is too large, it must stay below 4 GiB", "use fewer or smaller files");
}

}  // namespace

std::vector<std::byte> WriteArchive(const std::vector<PackageFile>& files) {
    std::vector<std::string> names;
    for (const PackageFile& file : files) names.push_back(file.name);
    CheckPackageNames(names);

    Writer writer;
    if (!mz_zip_writer_init_heap(&writer.zip, 0, 0)) throw std::bad_alloc();
    for (const PackageFile& file : files) {
        if (file.bytes.size() >= kTooLarge) FailForSize();
        if (!mz_zip_writer_add_mem(&writer.zip, file.name.c_str(), file.bytes.data(), file.bytes.size(),
                                   MZ_DEFAULT_LEVEL) ||
            mz_zip_is_zip64(&writer.zip))
            FailForSize();
    }
    void* content = nullptr;
    std::size_t size = 0;
    if (!mz_zip_writer_finalize_heap_archive(&writer.zip, &content, &size)) FailForSize();
    const std::unique_ptr<void, decltype(&mz_free)> owner(content, &mz_free);
    const auto* const bytes = static_cast<const std::byte*>(content);
    std::vector<std::byte> archive(bytes, bytes + size);
    EraseDates(archive);
    return archive;
}

namespace {

// Both ways are the same exclusive or; the key follows the plain bytes, which are the input of one way and the result
// of the other.
std::vector<std::byte> Chain(std::span<const std::byte> from, bool isFromPlain) {
    std::vector<std::byte> result(from.begin(), from.end());
    KeySchedule schedule;
    for (std::size_t at = 0; at < from.size(); at += 4) {
        // The last word may be incomplete; zeros fill it up.
        const std::size_t count = std::min<std::size_t>(4, from.size() - at);
        for (std::size_t i = 0; i < count; ++i) result[at + i] ^= static_cast<std::byte>(schedule.key >> (8 * i));
        std::array<std::byte, 4> plain{};
        std::copy_n((isFromPlain ? from.data() : result.data()) + at, count, plain.begin());
        schedule.advance(LoadLittle<std::uint32_t>(plain, 0));
    }
    return result;
}

}  // namespace

std::vector<std::byte> Scramble(std::span<const std::byte> archive) {
    return Chain(archive, /*isFromPlain=*/true);
}

std::vector<std::byte> Unscramble(std::span<const std::byte> scrambled) {
    return Chain(scrambled, /*isFromPlain=*/false);
}

}  // namespace quillon
