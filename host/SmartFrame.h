#pragma once

#include <map>
#include <memory>

#include "host/Frame.h"
#include "host/HostSession.h"

namespace quillon::host {

// What the smart route's callbacks serve, for one frame.
struct SmartWorlds {
    struct Checkout {
        PF_ParamIndex index = 0;
        PF_LRect resultRect{};
        std::shared_ptr<World> pixels{};  // once asked for
        PF_EffectWorld record{};
    };

    const FrameRequest* request = nullptr;
    std::map<A_long, Checkout> checkouts;  // by checkout id
    std::shared_ptr<World> output;         // null in the size phase
    PF_EffectWorld outputRecord{};

    // Where a layer's pixels are, in the layer's coordinates; empty without pixels.
    PF_LRect layerRect(const HostInstance& instance, PF_ParamIndex index) const;
    std::shared_ptr<World> layerPixels(const HostInstance& instance, PF_ParamIndex index) const;
};

// One frame by the smart route, phase by phase. The instance and the session outlive it.
class SmartFrame {
public:
    SmartFrame(HostInstance& frameInstance, const FrameRequest& frameRequest);
    ~SmartFrame();
    SmartFrame(const SmartFrame&) = delete;
    SmartFrame& operator=(const SmartFrame&) = delete;

    // All phases; the render is left out when the size phase fails.
    FrameResult walk();

    Answer preRender();  // SMART_PRE_RENDER, over `input` and `answer` below
    // Makes the output of the size phase's result rectangle, or returns why that is not possible.
    const char* makeOutput();
    // As makeOutput() has prepared it; without an output the effect gets none.
    Answer render();

    // What the effect is asked and answers in the size phase. A test may preset them before.
    PF_PreRenderInput input{};
    PF_PreRenderOutput answer{};

    std::shared_ptr<World> output() const { return worlds.output; }  // null before makeOutput()

private:
    void checkRectangles() const;

    HostInstance& instance;
    HostSession& session;
    const FrameRequest request;
    SmartWorlds worlds;
};

}  // namespace quillon::host
