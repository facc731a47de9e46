#include "imagelib/Surface.h"

namespace quillon {

bool Surface::init(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits, bool argbOrdered) {
    width = columns;
    height = rows;
    bitDepth = bits;
    isArgbOrdered = argbOrdered;
    rowBytes = (columns * bits) >> 1;
    return true;
}

std::byte* Surface::pixelAddress() {
    if (borrowedPixels) return borrowedPixels->data();
    return pixels.empty() ? nullptr : pixels.data();
}

std::size_t Surface::byteSize() const {
    return borrowedPixels ? borrowedPixels->size() : pixels.size();
}

}  // namespace quillon
