#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "platform/LittleEndian.h"

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
    StoreLittle(trailer, 0, packageBytes);
    std::transform(kModuleTrailerMark.begin(), kModuleTrailerMark.end(), trailer.begin() + 4,
                   [](char character) { return static_cast<std::byte>(character); });
    return trailer;
}

// The package's length as the last bytes of a file of `fileBytes` bytes tell it. Nothing when they are no trailer, or
// one whose package would not fit in the file.
inline std::optional<std::uint32_t> PackageBytesBefore(const ModuleTrailer& trailer, std::uint64_t fileBytes) {
    const auto packageBytes = LoadLittle<std::uint32_t>(trailer, 0);
    if (trailer != MakeModuleTrailer(packageBytes)) return std::nullopt;
    if (std::uint64_t{packageBytes} + kModuleTrailerBytes > fileBytes) return std::nullopt;
    return packageBytes;
}

// The package behind an image, the bytes of a whole file: a part of them. Nothing when there is none.
inline std::optional<std::span<const std::byte>> PackageBehindImage(std::span<const std::byte> file) {
    if (file.size() < kModuleTrailerBytes) return std::nullopt;
    ModuleTrailer trailer;
    std::copy(file.end() - kModuleTrailerBytes, file.end(), trailer.begin());
    const auto packageBytes = PackageBytesBefore(trailer, file.size());
    if (!packageBytes) return std::nullopt;
    return file.subspan(file.size() - kModuleTrailerBytes - *packageBytes, *packageBytes);
}

}  // namespace quillon
