#include "cli/effect/LoadedEffect.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>

#include "cli/effect/HostValues.h"
#include "cli/effect/LinkedEngine.h"

namespace quillon::cli {

LoadedEffect::LoadedEffect(EffectSource effect, const host::HostSettings& hostSettings)
    : source(std::move(effect)),
      settings(hostSettings),
      packed(source),
      rehearsal(LinkedEngine::WithPackageOf(packed.effect()), settings),
      module(packed.effect(), settings) {
    LinkedEngine::Listen(source);
    try {
        startRehearsal();
        module.start();
        packed.removeFile();
    } catch (const std::runtime_error& error) {
        throwRenderFault(nullptr, error.what());
    }
    visibleControls = ControlsOf(LinkedEngine::Declarations());
    if (visibleControls.size() != module.parameters().size())
        throw Fault("", fmt::format("internal error: {} controls were declared and {} registered",
                                    visibleControls.size(), module.parameters().size()));
    throwViolations();
}

void LoadedEffect::startRehearsal() {
    try {
        rehearsal.start();
    } catch (const std::runtime_error&) {
        LinkedEngine::RequireOpenGL();
        throwFaults();
        throw;
    }
    LinkedEngine::RequireOpenGL();  // an engine without a context starts, and then draws nothing
    throwFaults();
    largestExtent = LinkedEngine::LargestExtent();
    LinkedEngine::DrawNothing();
}

Picture LoadedEffect::render(const FrameInput& input) {
    takePictures(input);
    host::FrameRequest request;
    request.input = input.picture;
    request.layerWidth = static_cast<A_long>(input.fullExtent.width);
    request.layerHeight = static_cast<A_long>(input.fullExtent.height);
    try {
        const bool isFirst = !isApplied;
        if (isFirst) apply();
        prepare(rehearsal, input, request);
        if (isFirst) rehearsal.updatePanel();
        throwFaults();
        const HostFrame rehearsed = rehearsal.render(request);
        throwFaults();
        checkFrame(rehearsed);
        prepare(module, input, request);
        if (isFirst) module.updatePanel();
        const HostFrame frame = module.render(request);
        checkFrame(frame);
        throwViolations();
        const host::World& output = *frame.result.output;
        return {static_cast<std::uint32_t>(output.width()), static_cast<std::uint32_t>(output.height()),
                HostFormat(static_cast<std::uint32_t>(output.bitDepth())), ChannelOrder::argb, output.tightBytes()};
    } catch (const std::runtime_error& error) {
        throwRenderFault(nullptr, error.what());
    }
}

void LoadedEffect::apply() {
    rehearsal.apply();
    throwFaults();
    module.apply();
    isApplied = true;
}

// The moment, the values and the layers' pictures of this frame.
void LoadedEffect::prepare(HostRun& run, const FrameInput& input, const host::FrameRequest& request) {
    host::HostInstance& instance = run.instance();
    instance.currentTime = input.time.time;
    instance.timeStep = input.time.step;
    instance.timeScale = input.time.scale;
    for (const Control& control : visibleControls) {
        if (control.declared.kind == POINT2D)
            SetDefaultPosition(instance, control, static_cast<std::uint32_t>(request.input->width()),
                               static_cast<std::uint32_t>(request.input->height()));
    }
    for (const auto& [control, value] : values)
        SetControl(instance, *control, value, static_cast<std::uint32_t>(settings.downsampleX.den));
    for (const auto& [control, picture] : input.layers) instance.setLayer(control->index, picture);
}

void LoadedEffect::takePictures(const FrameInput& input) const {
    const auto check = [&](const char* what, host::World& picture) {
        picture.pixelAspect = settings.layerPixelAspect;
        if (static_cast<std::uint32_t>(std::max(picture.width(), picture.height())) <= largestExtent) return;
        throw Fault("", fmt::format("{} has {}x{} pixels", what, picture.width(), picture.height()),
                    fmt::format("the graphics driver takes up to {} in each direction", largestExtent));
    };
    check("the input", *input.picture);
    for (const auto& [control, layer] : input.layers) check("a layer", *layer);
}

void LoadedEffect::checkFrame(const HostFrame& frame) const {
    const host::FrameResult& result = frame.result;
    if (result.error() != PF_Err_NONE)
        throwRenderFault(nullptr,
                         fmt::format("the frame was not rendered: the effect answered with error {}", result.error()));
    const auto isPossible = [&](A_long side) { return side >= 1 && static_cast<std::uint32_t>(side) <= largestExtent; };
    if (!isPossible(result.width) || !isPossible(result.height)) {
        const bool isClassic = settings.routeInUse() == host::Route::classic;
        throwRenderFault("fx.js",
                         fmt::format("preRender: asks for an output of {}x{} pixels{}; the graphics driver takes 1 to "
                                     "{} in each direction",
                                     result.width, result.height, isClassic ? ", as the classic route makes of it" : "",
                                     largestExtent));
    }
    if (result.leftOut) throwRenderFault(nullptr, fmt::format("the frame was not rendered: {}", result.leftOut));
    if (!frame.isInput) return;
    throwRenderFault(nullptr, fmt::format("the frame of {}x{} at {} bits was not rendered: the script released its "
                                          "target, or the graphics driver gave no pixels; look at draw(), or render it "
                                          "smaller",
                                          result.width, result.height, result.output->bitDepth()));
}

void LoadedEffect::throwFaults() const {
    ThrowIfAny(LinkedEngine::TakeFaults(source));
}

void LoadedEffect::throwViolations() const {
    std::string words;
    for (const HostRun* run : {&rehearsal, &module})
        for (const std::string& violation : run->violations()) words += "\n  " + violation;
    if (!words.empty()) throw Fault("", "internal error: the effect module broke its host's rules:" + words);
}

void LoadedEffect::throwRenderFault(const char* file, const std::string& text) const {
    throw EffectFault(
        {{.path = file ? source.pathOf(file) : source.path.string(), .text = text, .kind = Diagnostic::Kind::render}});
}

}  // namespace quillon::cli
