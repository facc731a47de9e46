#pragma once

#include <cstddef>
#include <vector>

#include "host/HostCallback.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

// What an effect draws into a panel, in pixels.

// A part of a path.
struct Arc {
    DRAWBOT_PointF32 center;
    float radius;
    float startAngle;  // degrees, as the next
    float sweep;
};

// A picture as the effect handed it over.
struct DrawnImage {
    int width = 0;
    int height = 0;
    int rowBytes = 0;
    DRAWBOT_PixelLayout layout{};
    std::vector<std::byte> bytes{};  // rows as they came, rowBytes each
};

// One call of paintRect, fillPath, strokePath or drawImage, with all that it was drawn with.
struct Drawing {
    Callback call{};
    DRAWBOT_ColorRGBA color{};             // of rectangle, brush or pen
    float penSize = 0;                     // strokePath
    DRAWBOT_RectF32 rect{};                // paintRect
    std::vector<DRAWBOT_PointF32> path{};  // the points of moveTo and lineTo
    std::vector<Arc> arcs{};
    DRAWBOT_PointF32 imageOrigin{};  // drawImage, as the next two
    float imageAlpha = 0;
    DrawnImage image{};
};

}  // namespace quillon::host
