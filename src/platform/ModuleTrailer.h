#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace quillon {

// How a package lies behind an ELF image, which the system's loader ignores:
//
//     ELF image | package, n bytes | n, 32 bits little-endian | kModuleTrailerMark
//
// The trailer is the last 16 bytes of the file.
inline constexpr std::array<char, 12> kModuleTrailerMark = {'Q', 'u', 'i', 'l', 'l', 'o', 'n', 'B', 'L', 'O', 'B', '1'};
inline constexpr std::size_t kModuleTrailerBytes = 4 + kModuleTrailerMark.size();

using ModuleTrailer = std::array<std::byte, kModuleTrailerBytes>;

inline ModuleTrailer MakeModuleTrailer(std::uint32_t packageBytes) {
    ModuleTrailer trailer;
    for (int i = 0; i < 4; ++i) trailer[i] = static_cast<std::byte>(packageBytes >> (8 * i));
    std::transform(kModuleTrailerMark.begin(), kModuleTrailerMark.end(), trailer.begin() + 4,
                   [](char character) { return static_cast<std::byte>(character); });
    return trailer;
}

// The package's length as the last bytes of a file of `fileBytes` bytes tell it. Nothing when they are no trailer, or
// one whose package would not fit in the file.
inline std::optional<std::uint32_t> PackageBytesBefore(const ModuleTrailer& trailer, std::uint64_t fileBytes) {
    std::uint32_t packageBytes = 0;
    for (int i = 0; i < 4; ++i) packageBytes |= std::to_integer<std::uint32_t>(trailer[i]) << (8 * i);
    if (trailer != MakeModuleTrailer(packageBytes)) return std::nullopt;
    if (std::uint64_t{packageBytes} + kModuleTrailerBytes > fileBytes) return std::nullopt;
    return packageBytes;
}

}  // namespace quillon
