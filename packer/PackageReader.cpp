#include "packer/PackageReader.h"

#include <miniz.h>

#include <span>
#include <string>

#include "package/ArchiveLimits.h"
#include "package/ZipArchive.h"
#include "packer/Archive.h"
#include "packer/FileError.h"
#include "packer/PortableExecutable.h"
#include "packer/WholeFile.h"
#include "packer/WindowsModule.h"
#include "platform/ModuleTrailer.h"

namespace quillon {

namespace {

struct Listing {
    mz_zip_archive zip{};

    ~Listing() { mz_zip_reader_end(&zip); }
};

std::vector<std::byte> PlainArchive(const std::filesystem::path& module) {
    const std::vector<std::byte> file = ReadWholeFile(module);
    std::span<const std::byte> package;
    try {
        package = IsPortableExecutable(file) ? PackageOfWindowsModule(file) : PieceAtEnd(file).value_or(package);
    } catch (const FileError& error) {
        throw error.at(module.string());
    }
    if (package.empty())
        throw FileError(module.string(), "carries no package", "give an effect's folder, or a module of quillon pack");
    return Unscramble(package);
}

}  // namespace

std::vector<PackageFile> ReadPackage(const std::filesystem::path& module) {
    const std::vector<std::byte> plain = PlainArchive(module);
    const auto archive = ZipArchive::Open(plain);
    Listing listing;
    if (!archive || !mz_zip_reader_init_mem(&listing.zip, plain.data(), *LengthOfSoundArchive(plain), 0))
        throw FileError(module.string(), "its package is damaged", "pack the effect again");
    std::vector<PackageFile> files;
    for (mz_uint i = 0; i < mz_zip_reader_get_num_files(&listing.zip); ++i) {
        mz_zip_archive_file_stat entry;
        if (!mz_zip_reader_file_stat(&listing.zip, i, &entry) || mz_zip_reader_is_file_a_directory(&listing.zip, i))
            continue;
        // Not the name in the entry, which has room for 511 bytes.
        std::string name(mz_zip_reader_get_filename(&listing.zip, i, nullptr, 0), '\0');
        mz_zip_reader_get_filename(&listing.zip, i, name.data(), static_cast<mz_uint>(name.size()));
        name.resize(name.size() - 1);  // its end
        PackageFile file{name, archive->Read(name)};
        if (file.bytes.size() != entry.m_uncomp_size)
            throw FileError(module.string(), "'" + file.name + "' in its package is damaged", "pack the effect again");
        files.push_back(std::move(file));
    }
    return files;
}

}  // namespace quillon
