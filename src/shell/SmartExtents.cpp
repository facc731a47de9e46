#include "shell/SmartExtents.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace quillon {

namespace {

bool IsEmpty(const PF_LRect& rect) {
    return rect.left >= rect.right || rect.top >= rect.bottom;
}

// Sums in 32 bits that wrap, as the extents of a script may be anything.
A_long Plus(A_long a, std::uint32_t b) {
    return static_cast<A_long>(static_cast<std::uint32_t>(a) + b);
}

}  // namespace

FrameExtent ExtentOf(const PF_LRect& rect) {
    return {static_cast<std::uint32_t>(rect.right) - static_cast<std::uint32_t>(rect.left),
            static_cast<std::uint32_t>(rect.bottom) - static_cast<std::uint32_t>(rect.top)};
}

PF_LRect UnionOf(const PF_LRect& a, const PF_LRect& b) {
    if (IsEmpty(a)) return b;
    if (IsEmpty(b)) return a;
    PF_LRect both{};
    both.left = std::min(a.left, b.left);
    both.top = std::min(a.top, b.top);
    both.right = std::max(a.right, b.right);
    both.bottom = std::max(a.bottom, b.bottom);
    return both;
}

void AnswerExtents(PF_PreRenderOutput& output, const PF_LRect& requested, const PF_LRect& layer, FrameExtent asked) {
    // Some hosts may have 32 bits of flags: all bytes that they can take are cleared.
    std::memset(&output.flags, 0, offsetof(PF_PreRenderOutput, pre_render_data) - offsetof(PF_PreRenderOutput, flags));

    const FrameExtent input = ExtentOf(layer);
    if (asked != input) {
        PF_LRect& result = output.result_rect;
        result.left = Plus(layer.left, (input.width >> 1) - (asked.width >> 1));
        result.right = Plus(result.left, asked.width);
        result.top = Plus(layer.top, (input.height >> 1) - (asked.height >> 1));
        result.bottom = Plus(result.top, asked.height);
        output.max_result_rect = UnionOf(output.max_result_rect, result);
        output.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
        return;
    }
    output.result_rect = UnionOf(output.result_rect, layer);
    output.max_result_rect = UnionOf(output.max_result_rect, layer);
    // At the right and at the bottom equality counts as reaching past the request. This is intended.
    const bool reachesPast = layer.left < requested.left || layer.top < requested.top ||
                             layer.right >= requested.right || layer.bottom >= requested.bottom;
    if (reachesPast) output.flags = PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS;
}

}  // namespace quillon
