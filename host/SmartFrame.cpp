#include "host/SmartFrame.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "host/HostTables.h"
#include "host/Rectangles.h"

namespace quillon::host {

namespace {

// The difference of two edges: more than the number has room for becomes the largest.
A_long Extent(A_long low, A_long high) {
    constexpr auto kMost = std::int64_t{std::numeric_limits<A_long>::max()};
    return static_cast<A_long>(std::clamp(std::int64_t{high} - low, -kMost, kMost));
}

}  // namespace

std::shared_ptr<World> SmartWorlds::layerPixels(const HostInstance& instance, PF_ParamIndex index) const {
    return index == 0 ? request->input : instance.layer(index);
}

PF_LRect SmartWorlds::layerRect(const HostInstance& instance, PF_ParamIndex index) const {
    const std::shared_ptr<World> pixels = layerPixels(instance, index);
    if (!pixels) return {};
    const PF_LRect whole{0, 0, pixels->width(), pixels->height()};
    return index == 0 ? Offset(whole, request->inputOrigin.h, request->inputOrigin.v) : whole;
}

SmartFrame::SmartFrame(HostInstance& frameInstance, const FrameRequest& frameRequest)
    : instance(frameInstance), session(frameInstance.session), request(frameRequest) {
    worlds.request = &request;
    input.output_request.rect = request.rect.value_or(worlds.layerRect(instance, 0));
    input.output_request.field = PF_Field_FRAME;
    input.output_request.channel_mask = PF_ChannelMask_ARGB;
    input.bitdepth = static_cast<A_short>(request.depth());
}

SmartFrame::~SmartFrame() {
    if (answer.delete_pre_render_data_func) answer.delete_pre_render_data_func(answer.pre_render_data);
}

Answer SmartFrame::preRender() {
    PF_PreRenderExtra extra{&input, &answer, PreRenderCallbacks()};
    worlds.checkouts.clear();
    const Answer sent = session.send(
        {.cmd = PF_Cmd_SMART_PRE_RENDER, .instance = &instance, .frame = &request, .extra = &extra, .smart = &worlds});
    if (sent.error == PF_Err_NONE) checkRectangles();
    return sent;
}

void SmartFrame::checkRectangles() const {
    const bool mayExceed = (answer.flags & PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS) != 0;
    if (!mayExceed && !IsInside(answer.result_rect, input.output_request.rect))
        session.addViolation("SMART_PRE_RENDER: the result is larger than asked for, without the flag for it");
    if (!IsInside(answer.result_rect, answer.max_result_rect))
        session.addViolation("SMART_PRE_RENDER: the result reaches past its own maximum");
}

const char* SmartFrame::makeOutput() {
    const PF_LRect& rect = answer.result_rect;
    const auto width = std::int64_t{rect.right} - rect.left;
    const auto height = std::int64_t{rect.bottom} - rect.top;
    const int depth = request.depth();
    if (const char* objection = SizeObjection(width, height, depth, session.settings().maxWorldBytes)) return objection;
    worlds.output = session.newWorld(static_cast<A_long>(width), static_cast<A_long>(height), depth);
    worlds.output->origin = {request.inputOrigin.h - rect.left, request.inputOrigin.v - rect.top};
    worlds.outputRecord = worlds.output->record();
    return nullptr;
}

Answer SmartFrame::render() {
    PF_SmartRenderInput renderInput{};
    renderInput.output_request = input.output_request;
    renderInput.bitdepth = input.bitdepth;
    renderInput.pre_render_data = answer.pre_render_data;
    PF_SmartRenderExtra extra{&renderInput, SmartRenderCallbacks()};
    return session.send(
        {.cmd = PF_Cmd_SMART_RENDER, .instance = &instance, .frame = &request, .extra = &extra, .smart = &worlds});
}

FrameResult SmartFrame::walk() {
    FrameResult result;
    result.sizeError = preRender().error;
    result.resultRect = answer.result_rect;
    result.maxResultRect = answer.max_result_rect;
    result.renderFlags = answer.flags;
    result.width = Extent(answer.result_rect.left, answer.result_rect.right);
    result.height = Extent(answer.result_rect.top, answer.result_rect.bottom);
    if (result.sizeError != PF_Err_NONE) return result;
    result.leftOut = makeOutput();
    if (result.leftOut) return result;
    result.output = worlds.output;
    result.origin = worlds.output->origin;
    result.renderError = render().error;
    return result;
}

}  // namespace quillon::host
