#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "packer/EffectFolder.h"

namespace quillon {

// A flat ZIP archive of the files, in their order: deflated, without dates, the same bytes for the same input.
// Throws FileError when the files are more or larger than the format without its 64-bit extension can carry.
std::vector<std::byte> WriteArchive(const std::vector<PackageFile>& files);

// The archive as the module carries it: BlobReader undoes this. As many bytes as came in.
std::vector<std::byte> Scramble(std::span<const std::byte> archive);

// The way back.
std::vector<std::byte> Unscramble(std::span<const std::byte> scrambled);

}  // namespace quillon
