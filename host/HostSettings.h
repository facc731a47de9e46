#pragma once

#include <cstddef>

#include "hostapi/HostApi.h"

namespace quillon::host {

// Which host is played, and by which selectors it renders a frame.
enum class HostKind { afterEffects, premiere };
enum class Route {
    smart,    // SMART_PRE_RENDER, SMART_RENDER; After Effects only, and only for an effect that supports it
    classic,  // FRAME_SETUP, RENDER, FRAME_SETDOWN
};

// What a session's host is like. Fixed once the session is made.
struct HostSettings {
    HostKind kind = HostKind::afterEffects;
    A_short versionMajor = 13;  // of the effect API, as in PF_InData
    A_short versionMinor = 9;
    Route route = Route::smart;

    A_long compWidth = 1920;  // of the composition, or of the sequence under Premiere Pro
    A_long compHeight = 1080;
    PF_RationalScale compPixelAspect{1, 1};
    PF_RationalScale layerPixelAspect{1, 1};

    PF_RationalScale downsampleX{1, 1};  // 1/2: every picture is half as wide as its layer
    PF_RationalScale downsampleY{1, 1};

    A_long currentTime = 0;  // in units of 1/timeScale seconds; what a new instance starts with
    A_long timeStep = 1;     // the length of a frame
    A_long totalTime = 300;
    A_u_long timeScale = 30;

    int rowPaddingPixels = 3;                             // after each row of the worlds that the session makes
    std::size_t maxWorldBytes = std::size_t{2048} << 20;  // an output asked for beyond it is refused

    bool keepsRecords = true;  // false where many frames are made and none is asked about

    A_long applId() const { return kind == HostKind::premiere ? kPremiereId : kAfterEffectsId; }
    Route routeInUse() const { return kind == HostKind::premiere ? Route::classic : route; }
};

}  // namespace quillon::host
