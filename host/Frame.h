#pragma once

#include <memory>
#include <optional>

#include "host/World.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

// What a host wants of one frame.
struct FrameRequest {
    std::shared_ptr<World> input;  // the input layer's picture, downsampled already; null: the layer has none
    int outputDepth = 0;           // bits a channel; 0: as the input, 8 without one

    // Smart route, in the layer's coordinates: the part that the host is after (default: all of the input), and where
    // the input's top left corner is.
    std::optional<PF_LRect> rect{};
    PF_Point inputOrigin{};

    // Classic route: what out_data holds before FRAME_SETUP, which is the output's size unless the effect changes it.
    // Default: the input's size.
    std::optional<A_long> presetWidth{};
    std::optional<A_long> presetHeight{};

    PF_Point sourceOrigin{};  // Premiere Pro: where the layer starts inside the input's picture

    // The layer's size before downsampling, PF_InData's width and height. Default: the input's size scaled up.
    std::optional<A_long> layerWidth{};
    std::optional<A_long> layerHeight{};

    // Of the output, in bits a channel.
    int depth() const { return outputDepth != 0 ? outputDepth : input ? input->bitDepth() : 8; }
};

// What became of it.
struct FrameResult {
    PF_Err sizeError = PF_Err_NONE;     // of SMART_PRE_RENDER or FRAME_SETUP; the render is then left out
    PF_Err renderError = PF_Err_NONE;   // of SMART_RENDER or RENDER
    PF_Err setdownError = PF_Err_NONE;  // of FRAME_SETDOWN
    const char* leftOut = nullptr;      // why the render was left out although the size phase went well; else null

    std::shared_ptr<World> output;  // null when the render was left out
    PF_LRect resultRect{};          // smart route
    PF_LRect maxResultRect{};
    A_long renderFlags = 0;
    A_long width = 0;  // the output's size as asked for, and where the input is in it
    A_long height = 0;
    PF_Point origin{};

    // The first of the three.
    PF_Err error() const { return sizeError ? sizeError : renderError ? renderError : setdownError; }
};

}  // namespace quillon::host
