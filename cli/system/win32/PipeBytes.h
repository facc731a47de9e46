#pragma once

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <span>

namespace quillon::cli {

inline constexpr std::size_t kMostAtOnce = std::size_t{1} << 20;

// False when nobody reads any more.
inline bool WriteAll(HANDLE file, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        DWORD count = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size(), kMostAtOnce));
        if (!WriteFile(file, bytes.data(), size, &count, nullptr)) return false;
        bytes = bytes.subspan(count);
    }
    return true;
}

// How many bytes were filled: fewer only where the pipe ends.
inline std::size_t ReadAll(HANDLE file, std::span<std::byte> bytes) {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        DWORD count = 0;
        const auto size = static_cast<DWORD>(std::min(bytes.size() - filled, kMostAtOnce));
        if (!ReadFile(file, bytes.data() + filled, size, &count, nullptr) || count == 0) break;
        filled += count;
    }
    return filled;
}

}  // namespace quillon::cli
