#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace quillon {

// Looks at an archive's end record and central directory before the archive library does, which opens more than an
// archive of ours may be (64-bit sizes, an end record too far from the end), loses its way in a long comment, and
// trusts some damaged fields.
//
// Gives the number of bytes to hand to the library: all up to the end record, without the comment after it. Nothing
// when the archive is not to be opened:
//   - no end record (the last one counts) in the last 65,557 bytes, or a 64-bit locator in front of it
//   - the numbers of entries on this disk and in all differ, or the disk numbers are not both 0 or both 1
//   - the central directory or one of its entries is outside the data, or carries another signature
//   - an entry gives 0xFFFFFFFF for a size or for its place
std::optional<std::size_t> LengthOfSoundArchive(std::span<const std::byte> data);

}  // namespace quillon
