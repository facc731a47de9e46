#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "packer/Resources.h"

namespace quillon {

// Whether a file is for Windows, by its first two bytes.
bool IsPortableExecutable(std::span<const std::byte> file);

// A 64-bit Windows module (PE32+), as the bytes of its file.
class PortableExecutable {
public:
    // Reads the headers. `fileBytes` must stay unchanged while the object lives. Throws FileError, without a place, for
    // a file that no loader would take: other headers, sections out of order or outside the file.
    explicit PortableExecutable(std::span<const std::byte> fileBytes);

    // The resources, as parts of the file. Throws FileError when the directory is damaged, see ResourceDirectory.h.
    Resources resources() const;

    // A copy of the file with these resources instead of those it has. A resource section that ends the image is
    // written again in its place. Otherwise a new section follows the last one, and the old one stays as unused bytes,
    // since nothing after it can move. What follows the sections (a symbol table) still does; a signature would be
    // wrong and is dropped. The result depends only on the file and the resources, and with the same resources the
    // result gives itself. Throws FileError when headers or address space have no room.
    std::vector<std::byte> withResources(const Resources& resources) const;

private:
    struct Section {
        std::uint32_t address, imageBytes;  // in the loaded image
        std::uint32_t position, fileBytes;
        std::uint32_t mappedBytes;  // of the file's, those in the image: never past its last page
        std::uint32_t flags;
        bool isNamedForResources;
    };
    struct DataDirectory {
        std::uint32_t address = 0, size = 0;
    };
    struct Placement;

    std::span<const std::byte> bytesAt(std::size_t position, std::size_t size) const;
    std::uint32_t number(std::size_t position) const;
    void readSections(std::size_t table, std::size_t count);
    DataDirectory directory(std::size_t index) const;
    const Section* sectionAt(std::uint32_t address) const;
    std::span<const std::byte> imageBytes(std::uint32_t address, std::uint32_t size) const;
    bool endsWithResources() const;
    Placement placeResources() const;
    void patchHeaders(std::span<std::byte> out, const Placement& placement, std::size_t sectionBytes,
                      std::size_t overlayShift) const;

    std::span<const std::byte> file;
    std::size_t header = 0;        // position of the signature, which the headers follow
    std::size_t sectionTable = 0;  // position
    std::size_t directories = 0;   // how many the headers have
    std::uint32_t sectionAlignment = 0, fileAlignment = 0;
    std::vector<Section> sections;
    std::size_t overlay = 0;  // position: where the last section's bytes end
};

}  // namespace quillon
