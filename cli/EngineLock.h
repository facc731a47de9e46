#pragma once

#include <cstdint>

#include "cli/ToolError.h"

namespace quillon {
class IPlugin;
}

namespace quillon::cli {

// The engine's GL lock for a scope. Throws NoOpenGL when it cannot be had.
class EngineLock {
public:
    explicit EngineLock(IPlugin& plugin);
    ~EngineLock();
    EngineLock(const EngineLock&) = delete;
    EngineLock& operator=(const EngineLock&) = delete;

private:
    IPlugin& engine;
};

// What to say when the system has no OpenGL for us.
ToolError NoOpenGL();

// Pixels that a picture may have in either direction. Takes the lock.
std::uint32_t LargestTextureExtent(IPlugin& engine);

// Whether a picture has pixels, and no more than that.
constexpr bool IsPossibleExtent(std::uint32_t width, std::uint32_t height, std::uint32_t largest) {
    return width >= 1 && height >= 1 && width <= largest && height <= largest;
}

}  // namespace quillon::cli
