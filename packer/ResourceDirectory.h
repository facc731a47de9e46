#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "packer/Resources.h"

namespace quillon {

// A module's bytes from an address in the loaded image on; throws FileError unless `size` bytes are there.
using ImageBytes = std::function<std::span<const std::byte>(std::uint32_t address, std::uint32_t size)>;

// Reads the resources of the directory at the start of `section`, which ends where its section of the file does. Of two
// with the same key the first one counts. Throws FileError for a directory that is damaged: it reaches outside, is not
// three levels deep, or shares parts of itself so often that it is larger than its section.
Resources ReadResourceDirectory(std::span<const std::byte> section, const ImageBytes& imageBytes);

// Data is written at multiples of this many bytes.
inline constexpr std::size_t kResourceAlignment = 8;

// Appends the section of these resources: the directory, then their data in the directory's order. `address` is the
// section's in the loaded image. Throws FileError when that is more than `mostBytes`.
void AppendResourceSection(std::vector<std::byte>& bytes, const Resources& resources, std::uint32_t address,
                           std::uint64_t mostBytes);

}  // namespace quillon
