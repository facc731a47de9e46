#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "packer/PackageFile.h"

namespace quillon {

// A flat ZIP archive of the files, in their order: deflated, without dates, the same bytes for the same input.
// Throws FileError when the files are more or larger than the format without its 64-bit extension can carry.
std::vector<std::byte> WriteArchive(const std::vector<PackageFile>& files);

// The archive as the module carries it, with as many bytes; BlobReader undoes this.
std::vector<std::byte> Scramble(std::span<const std::byte> archive);

// The archive that Scramble made these bytes of.
std::vector<std::byte> Unscramble(std::span<const std::byte> scrambled);

}  // namespace quillon
