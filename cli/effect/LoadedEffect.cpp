#include "cli/effect/LoadedEffect.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "cli/diagnostics/Rules.h"
#include "cli/effect/LinkedEngine.h"

namespace quillon::cli {

namespace {

// Puts a 2D position at its default: a host keeps that as a share of the picture's extent, of which the effect has
// registered 16 bits in the upper half of a number that would be pixels in a live value.
void SetDefaultPosition(host::HostInstance& instance, const Control& control, std::uint32_t width,
                        std::uint32_t height) {
    const PF_PointDef& point = instance.param(control.index).u.td;
    const auto share = [](PF_Fixed registered) { return static_cast<std::uint32_t>(registered) / 4294967296.0; };
    instance.setPoint(control.index, share(point.x_dephault) * width, share(point.y_dephault) * height);
}

}  // namespace

LoadedEffect::LoadedEffect(EffectSource effect, const host::HostSettings& hostSettings)
    : source(std::move(effect)),
      settings(hostSettings),
      packed(source),
      linked(LinkedEngine::WithPackageOf(packed.effect()), settings) {
    if (source.isModule) module.emplace(packed.effect(), settings);
    LinkedEngine::Listen(source);
    try {
        startLinked();
        if (module) module->start();
        packed.removeFile();
    } catch (const std::runtime_error& error) {
        throwRenderFault(error.what());
    }
    visibleControls = ControlsOf(LinkedEngine::Declarations());
    for (const HostRun* run : runs()) {
        if (visibleControls.size() != run->parameters().size())
            throw Fault("", fmt::format("internal error: {} controls were declared and {} registered",
                                        visibleControls.size(), run->parameters().size()));
    }
    throwViolations();
}

std::vector<HostRun*> LoadedEffect::runs() {
    return module ? std::vector<HostRun*>{&linked, &*module} : std::vector<HostRun*>{&linked};
}

std::vector<const HostRun*> LoadedEffect::runs() const {
    return module ? std::vector<const HostRun*>{&linked, &*module} : std::vector<const HostRun*>{&linked};
}

void LoadedEffect::startLinked() {
    try {
        linked.start();
    } catch (const std::runtime_error&) {
        LinkedEngine::RequireOpenGL();
        throwFaults();
        throw;
    }
    LinkedEngine::RequireOpenGL();  // an engine without a context starts, and then draws nothing
    throwFaults();
    largestExtent = LinkedEngine::LargestExtent();
    if (module) LinkedEngine::DrawNothing();
}

void LoadedEffect::set(const Control& control, ValueAt valueAt) {
    valuesOf[chosen][control.index] = {&control, std::move(valueAt)};
    isPanelOld = true;
}

void LoadedEffect::reset(const Control& control) {
    valuesOf[chosen].erase(control.index);
    isPanelOld = true;
    if (!isApplied) return;
    for (HostRun* run : runs()) {
        if (control.declared.kind == LAYER)
            run->instance().setLayer(control.index, nullptr);
        else
            run->instance().takeOver(control.index, parameters()[static_cast<std::size_t>(control.index) - 1]);
    }
}

const PF_ParamDef& LoadedEffect::shown(const Control& control) const {
    return isApplied ? linked.instance().param(control.index)
                     : parameters()[static_cast<std::size_t>(control.index) - 1];
}

std::shared_ptr<host::World> LoadedEffect::render(const FrameInput& input) {
    takePictures(input);
    host::FrameRequest request;
    request.input = input.picture;
    request.layerWidth = static_cast<A_long>(input.fullExtent.width);
    request.layerHeight = static_cast<A_long>(input.fullExtent.height);
    try {
        startFirst();
        prepare(linked, input, request);
        const bool hasOldPanel = std::exchange(isPanelOld, false);
        if (hasOldPanel) linked.updatePanel();
        throwFaults();
        HostFrame frame = linked.render(request);
        throwFaults();
        checkFrame(frame);
        if (module) {
            prepare(*module, input, request);
            if (hasOldPanel) module->updatePanel();
            frame = module->render(request);
            checkFrame(frame);
        }
        throwViolations();
        return frame.result.output;
    } catch (const std::runtime_error& error) {
        throwRenderFault(error.what());
    }
}

void LoadedEffect::addInstance() {
    try {
        startFirst();
        valuesOf.emplace_back();
        chosen = valuesOf.size() - 1;
        apply();
    } catch (const std::runtime_error& error) {
        throwRenderFault(error.what());
    }
}

void LoadedEffect::selectInstance(std::size_t number) {
    chosen = number;
    for (HostRun* run : runs()) run->select(number);
    isPanelOld = true;
}

void LoadedEffect::startFirst() {
    if (isApplied) return;
    for (HostRun* run : runs())
        run->setValuesBy([this](host::HostInstance& instance, PF_ParamIndex index, double seconds) {
            setValue(instance, index, seconds);
        });
    apply();
    isApplied = true;
}

void LoadedEffect::apply() {
    linked.apply();
    throwFaults();
    if (module) module->apply();
    isPanelOld = true;
}

void LoadedEffect::setValue(host::HostInstance& instance, PF_ParamIndex index, double seconds) const {
    const Values& values = valuesOf[static_cast<std::size_t>(instance.number) - 1];
    const auto found = values.find(index);
    if (found == values.end()) return;
    const auto& [control, valueAt] = found->second;
    SetControl(instance, *control, valueAt(seconds), static_cast<std::uint32_t>(settings.downsampleX.den));
}

// The moment, the values and the layers' pictures of this frame.
void LoadedEffect::prepare(HostRun& run, const FrameInput& input, const host::FrameRequest& request) {
    host::HostInstance& instance = run.instance();
    instance.currentTime = input.time.time;
    instance.timeStep = input.time.step;
    instance.timeScale = input.time.scale;
    for (const Control& control : visibleControls) {
        if (ControlKindOf(control.declared.kind).hostControl == HostControl::point2D)
            SetDefaultPosition(instance, control, static_cast<std::uint32_t>(request.input->width()),
                               static_cast<std::uint32_t>(request.input->height()));
    }
    const double seconds = static_cast<double>(input.time.time) / input.time.scale;
    for (const auto& [index, value] : valuesOf[chosen]) setValue(instance, index, seconds);
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
    for (const auto& [control, layer] : input.layers)
        if (layer) check("a layer", *layer);
}

void LoadedEffect::checkFrame(const HostFrame& frame) const {
    const host::FrameResult& result = frame.result;
    if (result.error() != PF_Err_NONE)
        throwRenderFault(fmt::format("the frame was not rendered: the effect answered with error {}", result.error()));
    const auto isPossible = [&](A_long side) { return side >= 1 && static_cast<std::uint32_t>(side) <= largestExtent; };
    if (!isPossible(result.width) || !isPossible(result.height)) {
        const bool isClassic = settings.routeInUse() == host::Route::classic;
        throw EffectFault({Found("render/output-size", source.pathOf("fx.js"), 0, 0,
                                 fmt::format("preRender: asks for an output of {}x{} pixels{}", result.width,
                                             result.height, isClassic ? ", as the classic route makes of it" : ""),
                                 fmt::format("the graphics driver takes 1 to {} in each direction", largestExtent))});
    }
    if (result.leftOut) throwRenderFault(fmt::format("the frame was not rendered: {}", result.leftOut));
    if (!frame.isInput) return;
    throwRenderFault(
        fmt::format("the frame of {}x{} at {} bits was not rendered: the script released its target, or the graphics "
                    "driver gave no pixels; look at draw(), or render it smaller",
                    result.width, result.height, result.output->bitDepth()));
}

void LoadedEffect::throwFaults() const {
    ThrowIfAny(LinkedEngine::TakeFaults(source));
}

void LoadedEffect::throwViolations() const {
    std::string words;
    for (const HostRun* run : runs())
        for (const std::string& violation : run->violations()) words += "\n  " + violation;
    if (!words.empty()) throw Fault("", "internal error: the effect module broke its host's rules:" + words);
}

void LoadedEffect::throwRenderFault(const std::string& text) const {
    throw EffectFault({Found("render/failed", source.path.string(), 0, 0, text)});
}

}  // namespace quillon::cli
