#pragma once

#include <algorithm>
#include <cstdint>

#include "hostapi/HostApi.h"

namespace quillon::host {

// Rectangles in pixels, right and bottom exclusive. An intersection that is empty is all zero; an empty rectangle is
// inside every other.
inline bool IsEmpty(const PF_LRect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}
inline PF_LRect Intersection(const PF_LRect& a, const PF_LRect& b) {
    const PF_LRect both{std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
                        std::min(a.bottom, b.bottom)};
    return IsEmpty(both) ? PF_LRect{} : both;
}
inline bool IsInside(const PF_LRect& inner, const PF_LRect& outer) {
    return IsEmpty(inner) || (inner.left >= outer.left && inner.top >= outer.top && inner.right <= outer.right &&
                              inner.bottom <= outer.bottom);
}
inline PF_LRect Offset(const PF_LRect& rect, A_long x, A_long y) {
    return {rect.left + x, rect.top + y, rect.right + x, rect.bottom + y};
}

// No host makes a picture with a longer side.
inline constexpr std::int64_t kLongestSide = 30000;

// Why a host makes no world of this size; null when it does.
inline const char* SizeObjection(std::int64_t width, std::int64_t height, int bitDepth, std::size_t maxBytes) {
    if (width <= 0 || height <= 0) return "the output that the effect asked for is empty";
    if (width > kLongestSide || height > kLongestSide) return "the output that the effect asked for is too large";
    const std::uint64_t bytes = static_cast<std::uint64_t>(width * height) * static_cast<std::uint64_t>(bitDepth) / 2;
    return bytes > maxBytes ? "the output that the effect asked for needs too much memory" : nullptr;
}

}  // namespace quillon::host
