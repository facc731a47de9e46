#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <span>

namespace quillon::cli {

// False when nobody reads any more.
inline bool WriteAll(int file, std::span<const std::byte> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

// How many bytes were filled: fewer only where the pipe ends.
inline std::size_t ReadAll(int file, std::span<std::byte> bytes) {
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count = ::read(file, bytes.data() + filled, bytes.size() - filled);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) break;
        filled += static_cast<std::size_t>(count);
    }
    return filled;
}

}  // namespace quillon::cli
