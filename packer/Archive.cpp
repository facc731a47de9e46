#include "packer/Archive.h"

#include <miniz.h>

#include <algorithm>
#include <cstdint>
#include <memory>

#include "package/KeySchedule.h"
#include "packer/FileError.h"
#include "packer/PackageNames.h"

namespace quillon {

namespace {

constexpr std::size_t kMostFiles = 0xFFFF;
constexpr std::size_t kTooLarge = 0xFFFFFFFF;

struct Writer {
    mz_zip_archive zip{};

    ~Writer() { mz_zip_writer_end(&zip); }
};

std::uint32_t Word(const std::byte* bytes, int count) {
    std::uint32_t value = 0;
    for (int i = 0; i < count; ++i) value |= std::to_integer<std::uint32_t>(bytes[i]) << (8 * i);
    return value;
}

// The library stamps each file with the present moment, in its local header and in the central directory.
void EraseDates(std::span<std::byte> archive) {
    constexpr std::size_t kEndBytes = 22, kEntryBytes = 46;
    const std::byte* const end = archive.data() + archive.size() - kEndBytes;
    std::byte* entry = archive.data() + Word(end + 16, 4);
    for (std::uint32_t count = Word(end + 10, 2); count > 0; --count) {
        std::byte* const local = archive.data() + Word(entry + 42, 4);
        std::fill_n(local + 10, 4, std::byte{});
        std::fill_n(entry + 12, 4, std::byte{});
        entry += kEntryBytes + Word(entry + 28, 2) + Word(entry + 30, 2) + Word(entry + 32, 2);
    }
}

[[noreturn]] void FailForSize() {
    throw FileError("", "the package is too large, it must stay below 4 GiB", "use fewer or smaller files");
}

}  // namespace

std::vector<std::byte> WriteArchive(const std::vector<PackageFile>& files) {
    CheckPackageNames(files);
    if (files.size() > kMostFiles)
        throw FileError("", std::to_string(files.size()) + " files, and a package holds at most 65535",
                        "use fewer files");

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

// Both ways are the same exclusive or; the key follows the plain bytes, wherever those stand.
std::vector<std::byte> Chain(std::span<const std::byte> from, bool isFromPlain) {
    std::vector<std::byte> result(from.begin(), from.end());
    KeySchedule schedule;
    for (std::size_t at = 0; at < from.size(); at += 4) {
        // The last word may be a part of one, with zeros for the rest.
        const std::size_t count = std::min<std::size_t>(4, from.size() - at);
        for (std::size_t i = 0; i < count; ++i) result[at + i] ^= static_cast<std::byte>(schedule.key >> (8 * i));
        const std::byte* const plain = (isFromPlain ? from.data() : result.data()) + at;
        schedule.advance(Word(plain, static_cast<int>(count)));
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
