#pragma once

#include "shell/FramePhases.h"

namespace quillon {

// The rectangles of the smart route's size phase.

// Width and height; an inverted rectangle counts in 32 bits, without a sign.
FrameExtent ExtentOf(const PF_LRect& rect);

// The smallest rectangle around both. An empty one is left out of account.
PF_LRect UnionOf(const PF_LRect& a, const PF_LRect& b);

// Fills the host's record with the rectangles that it will get. `layer` is the input's largest rectangle, `asked` the
// extent of the script's output. An extent other than the layer's is centered on the layer. The flag for extra pixels
// says that more may come back than was requested.
void AnswerExtents(PF_PreRenderOutput& output, const PF_LRect& requested, const PF_LRect& layer, FrameExtent asked);

}  // namespace quillon
