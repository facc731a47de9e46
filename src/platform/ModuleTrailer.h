#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/LittleEndian.h"

namespace quillon {

// What a module carries after its ELF image, where the system's loader does not look:
//
//     ELF image | listing, m bytes | m, kListingMark | package, n bytes | n, kModuleTrailerMark
//
// Each piece ends in a trailer: its length, 32 bits little-endian, and a mark of 12 bytes. The package's trailer is the
// last 16 bytes of the file. Only plug-ins that hosts list without starting them have a listing.
using ModuleMark = std::array<char, 12>;
inline constexpr ModuleMark kModuleTrailerMark = {'Q', 'u', 'i', 'l', 'l', 'o', 'n', 'B', 'L', 'O', 'B', '1'};
inline constexpr ModuleMark kListingMark = {'Q', 'u', 'i', 'l', 'l', 'o', 'n', 'L', 'I', 'S', 'T', '1'};
inline constexpr std::size_t kModuleTrailerBytes = 4 + kModuleTrailerMark.size();

// As it is in the file, and one for a piece of so many bytes.
using ModuleTrailer = std::array<std::byte, kModuleTrailerBytes>;
inline ModuleTrailer MakeModuleTrailer(std::uint32_t bytes, const ModuleMark& mark = kModuleTrailerMark) {
    ModuleTrailer trailer;
    StoreLittle(trailer, 0, bytes);
    std::transform(mark.begin(), mark.end(), trailer.begin() + 4,
                   [](char character) { return static_cast<std::byte>(character); });
    return trailer;
}

// The length of the piece that ends in this trailer, the last bytes of a file of `fileBytes` bytes. Nothing when they
// are no trailer with this mark, or one whose piece would not fit in the file.
inline std::optional<std::uint32_t> BytesBefore(const ModuleTrailer& trailer, std::uint64_t fileBytes,
                                                const ModuleMark& mark = kModuleTrailerMark) {
    const auto bytes = LoadLittle<std::uint32_t>(trailer, 0);
    if (trailer != MakeModuleTrailer(bytes, mark)) return std::nullopt;
    if (std::uint64_t{bytes} + kModuleTrailerBytes > fileBytes) return std::nullopt;
    return bytes;
}

// The piece that ends a file, or what is before another piece of it: a part of these bytes. Nothing when there is none.
inline std::optional<std::span<const std::byte>> PieceAtEnd(std::span<const std::byte> file,
                                                            const ModuleMark& mark = kModuleTrailerMark) {
    if (file.size() < kModuleTrailerBytes) return std::nullopt;
    ModuleTrailer trailer;
    std::copy(file.end() - kModuleTrailerBytes, file.end(), trailer.begin());
    const auto bytes = BytesBefore(trailer, file.size(), mark);
    if (!bytes) return std::nullopt;
    return file.subspan(file.size() - kModuleTrailerBytes - *bytes, *bytes);
}

}  // namespace quillon
