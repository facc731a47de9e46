#pragma once

#include <memory>

#include "host/Frame.h"
#include "host/HostSession.h"

namespace quillon::host {

// One frame by the classic route, phase by phase. The instance and the session outlive it.
class ClassicFrame {
public:
    ClassicFrame(HostInstance& frameInstance, const FrameRequest& frameRequest);
    ~ClassicFrame();
    ClassicFrame(const ClassicFrame&) = delete;
    ClassicFrame& operator=(const ClassicFrame&) = delete;

    // All phases. The render is left out when the size phase fails; the setdown comes in any case.
    FrameResult walk();

    Answer setup();  // FRAME_SETUP; its answer is also in the members below
    // Makes the output in the size that setup() left, or returns why that is not possible.
    const char* makeOutput();
    Answer render();
    Answer setdown();

    // As the effect left them in out_data; the size that the host presets, before.
    A_long width;
    A_long height;
    PF_Point origin{};
    PF_Handle frameData = nullptr;

    std::shared_ptr<World> output;

private:
    Selector selector(PF_Cmd cmd) const;

    HostInstance& instance;
    HostSession& session;
    const FrameRequest request;
};

}  // namespace quillon::host
