#include "package/ZipArchive.h"

#include <miniz.h>

#include <cstring>

#include "package/ArchiveLimits.h"
#include "platform/MemoryShortage.h"

namespace quillon {

namespace {

// Deflate takes at least two bits for the longest run, which is 258 bytes.
constexpr mz_uint64 kMostBytesOfPackedByte = 258 * 8 / 2;

// What the library has failed at looks like a damaged archive or entry.
void NoteShortage(mz_zip_archive& zip) {
    if (mz_zip_get_last_error(&zip) == MZ_ZIP_ALLOC_FAILED) NoteMemoryShortage();
}

}  // namespace

struct ZipArchive::Reader {
    mz_zip_archive zip{};

    ~Reader() { mz_zip_reader_end(&zip); }
};

ZipArchive::ZipArchive() : reader(std::make_unique<Reader>()) {}
ZipArchive::~ZipArchive() = default;

std::unique_ptr<ZipArchive> ZipArchive::Open(std::span<const std::byte> data) {
    const auto length = LengthOfSoundArchive(data);
    if (!length) return nullptr;
    std::unique_ptr<ZipArchive> archive(new ZipArchive);
    mz_zip_archive& zip = archive->reader->zip;
    if (mz_zip_reader_init_mem(&zip, data.data(), *length, 0)) return archive;
    NoteShortage(zip);
    return nullptr;
}

std::vector<std::byte> ZipArchive::Read(const std::string& name) {
    mz_zip_archive& zip = reader->zip;
    const int found = mz_zip_reader_locate_file(&zip, name.c_str(), nullptr, 0);
    if (found < 0) return {};
    const auto index = static_cast<mz_uint>(found);
    // For an entry that is marked as a directory the library hands out memory that it has not filled.
    if (mz_zip_reader_is_file_a_directory(&zip, index)) return {};
    // It also allocates whatever size an entry claims before it looks at what is there.
    mz_zip_archive_file_stat entry;
    if (!mz_zip_reader_file_stat(&zip, index, &entry) || entry.m_comp_size > zip.m_archive_size ||
        entry.m_uncomp_size > entry.m_comp_size * kMostBytesOfPackedByte)
        return {};

    std::size_t size = 0;
    const std::unique_ptr<void, decltype(&mz_free)> content(mz_zip_reader_extract_to_heap(&zip, index, &size, 0),
                                                            &mz_free);
    if (!content) NoteShortage(zip);
    std::vector<std::byte> bytes(content ? size : 0);
    if (!bytes.empty()) std::memcpy(bytes.data(), content.get(), bytes.size());
    return bytes;
}

}  // namespace quillon
