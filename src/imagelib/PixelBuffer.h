#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace quillon {

// The CPU bytes of a picture. Shared, so that a surface that aliases a texture's copy keeps the bytes alive when the
// texture is released or receives another picture.
using PixelBuffer = std::shared_ptr<std::vector<std::byte>>;

}  // namespace quillon
