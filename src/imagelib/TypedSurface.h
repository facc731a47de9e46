#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>

#include "imagelib/Pixels.h"

namespace quillon::ImageLib {

// What surfaces of all pixel types have in common: they can be ended, and not copied.
class SurfaceBase {
public:
    virtual ~SurfaceBase() = default;

protected:
    SurfaceBase() = default;
    SurfaceBase(const SurfaceBase&) = delete;
    SurfaceBase& operator=(const SurfaceBase&) = delete;
};

// A rectangle of pixels of one type: either a view of memory that lives elsewhere, or the owner of its block.
template <class T>
class Surface final : public SurfaceBase {
public:
    // An owner of uncleared pixels, rows tight. Throws std::bad_alloc.
    Surface(std::uint32_t columns, std::uint32_t rows)
        : width(columns), height(rows), rowBytes(std::uint64_t{columns} * sizeof(T)), ownsPixels(true) {
        const std::uint64_t bytes = rowBytes * height;
        pixels = static_cast<T*>(std::malloc(bytes != 0 ? bytes : 1));
        if (!pixels) throw std::bad_alloc();
    }

    // A view. `bytesPerRow` is the distance between rows; 0 means that they are tight.
    Surface(T* block, std::uint32_t columns, std::uint32_t rows, std::uint64_t bytesPerRow)
        : width(columns),
          height(rows),
          rowBytes(bytesPerRow != 0 ? bytesPerRow : std::uint64_t{columns} * sizeof(T)),
          pixels(block) {}

    ~Surface() override {
        if (ownsPixels) std::free(pixels);
    }

    // The first pixel of a row, from the top; no bound is checked.
    T* row(std::uint32_t y) const { return reinterpret_cast<T*>(reinterpret_cast<char*>(pixels) + y * rowBytes); }

    std::uint32_t width;
    std::uint32_t height;
    std::uint64_t rowBytes;
    std::uint32_t bitDepth = T::kBitDepth;
    T* pixels = nullptr;
    bool ownsPixels = false;
};

}  // namespace quillon::ImageLib
