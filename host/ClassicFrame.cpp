#include "host/ClassicFrame.h"

#include "host/Rectangles.h"

namespace quillon::host {

ClassicFrame::ClassicFrame(HostInstance& frameInstance, const FrameRequest& frameRequest)
    : instance(frameInstance), session(frameInstance.session), request(frameRequest) {
    const HostSettings& settings = session.settings();
    width = request.presetWidth.value_or(request.input ? request.input->width() : settings.compWidth);
    height = request.presetHeight.value_or(request.input ? request.input->height() : settings.compHeight);
}

ClassicFrame::~ClassicFrame() {
    if (frameData) session.handles().disposeIfAlive(frameData);
}

Selector ClassicFrame::selector(PF_Cmd cmd) const {
    return {.cmd = cmd,
            .instance = &instance,
            .hasParams = true,
            .frame = &request,
            .frameData = frameData,
            .outputOrigin = origin,
            .presetWidth = width,
            .presetHeight = height};
}

Answer ClassicFrame::setup() {
    const Answer answer = session.send(selector(PF_Cmd_FRAME_SETUP));
    width = answer.out.width;
    height = answer.out.height;
    origin = answer.out.origin;
    if (frameData && frameData != answer.out.frame_data) session.handles().disposeIfAlive(frameData);
    frameData = answer.out.frame_data;
    return answer;
}

const char* ClassicFrame::makeOutput() {
    const int depth = request.depth();
    if (const char* objection = SizeObjection(width, height, depth, session.settings().maxWorldBytes)) return objection;
    output = session.newWorld(width, height, depth);
    output->origin = origin;
    return nullptr;
}

Answer ClassicFrame::render() {
    Selector sent = selector(PF_Cmd_RENDER);
    sent.output = output;
    return session.send(sent);
}

Answer ClassicFrame::setdown() {
    const Answer answer = session.send(selector(PF_Cmd_FRAME_SETDOWN));
    if (!frameData) return answer;
    if (session.handles().isAlive(frameData)) {
        if (answer.error == PF_Err_NONE) session.addViolation("FRAME_SETDOWN: the frame's data is not disposed");
        session.handles().disposeIfAlive(frameData);
    }
    frameData = nullptr;
    return answer;
}

FrameResult ClassicFrame::walk() {
    FrameResult result;
    result.sizeError = setup().error;
    result.width = width;
    result.height = height;
    result.origin = origin;
    if (result.sizeError == PF_Err_NONE) {
        result.leftOut = makeOutput();
        if (!result.leftOut) {
            result.output = output;
            result.renderError = render().error;
        }
    }
    result.setdownError = setdown().error;
    return result;
}

}  // namespace quillon::host
