#pragma once

#include <string>
#include <vector>

#include "host/Drawing.h"
#include "host/HostCallback.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

// What an effect asked and answered, each list in the order of the calls. Kept until cleared, see HostSession.

// A callback, in the order of all of them.
struct TraceLine {
    int instance;  // HostInstance::number; 0 for a call that concerns no instance
    PF_Cmd selector;
    Callback callback;
    std::int64_t key;  // see Callback
    std::string text;  // the suite's name, the name registered, the button's name; else empty
};

// A layer asked for in the smart route's size phase, and what was answered.
struct LayerCheckout {
    PF_ParamIndex index;
    A_long id;
    PF_RenderRequest request;
    A_long time;
    A_long timeStep;
    A_u_long timeScale;
    PF_Err error;  // as answered, like the rectangles
    PF_LRect resultRect;
    PF_LRect maxResultRect;
};

// A control's value asked for at a time, in units of 1/timeScale seconds.
struct ParamCheckout {
    PF_ParamIndex index;
    A_long time;
    A_long timeStep;
    A_u_long timeScale;
    PF_Err error;
};

// A control whose name or state the effect has changed in the panel; the record is a copy.
struct ParamUIUpdate {
    PF_ParamIndex index;
    PF_ParamDef def;
    PF_Err error;
};

// A copy from world to world.
struct CopyCall {
    PF_EffectWorld source;
    PF_EffectWorld destination;
    bool isWhole;  // both rectangles null
    PF_Err error;
};

// A world, or a part of it, filled with one color.
struct FillCall {
    PF_Pixel color;
    PF_EffectWorld world;
    bool isWhole;
    PF_Err error;
};

// Words that the effect wants its user to see.
struct Message {
    PF_Cmd selector;
    std::string text;
    bool isError;  // PF_OutFlag_DISPLAY_ERROR_MESSAGE
};

// All of it, for one session.
struct Records {
    std::vector<TraceLine> trace;  // every callback, those that fail on command as well

    std::vector<LayerCheckout> layerCheckouts;
    std::vector<ParamCheckout> paramCheckouts;
    std::vector<ParamUIUpdate> paramUIUpdates;
    std::vector<CopyCall> copies;
    std::vector<FillCall> fills;
    std::vector<Message> messages;
    std::vector<PF_CustomUIInfo> registeredUIs;
    std::vector<std::string> optionsButtonNames;
    std::vector<std::string> aegpNames;
    std::vector<PrPixelFormat> pixelFormats;  // those in force: a clear empties the list
    std::vector<A_Time> upstreamTimes;        // of the layer frames rendered
    std::vector<Drawing> drawings;

    int count(Callback callback) const;  // calls in the trace
    // Of a suite's acquisitions or releases, or of calls with this text; `key` as the version.
    int count(Callback callback, const std::string& text, std::int64_t key) const;
};

}  // namespace quillon::host
