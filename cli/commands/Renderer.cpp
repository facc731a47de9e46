#include "cli/commands/Renderer.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <thread>
#include <utility>

#include "cli/diagnostics/Rules.h"
#include "cli/effect/LinkedEngine.h"
#include "cli/effect/ShownTarget.h"
#include "cli/keyframes/Keyframes.h"
#include "cli/pictures/ContactSheet.h"
#include "package/EffectFlags.h"

namespace quillon::cli {

Renderer::Renderer(const RenderOptions& renderOptions)
    : options(renderOptions),
      plan(options),
      source(sourceToRender()),
      effect(std::move(source), plan.settings(openInput())) {
    setControls();
    for (const RenderPlan::Layer& layer : plan.layers) {
        const Control& control = FindControl(effect.controls(), layer.name);
        if (control.declared.kind != LAYER) {
            throw WrongCommandLine(layer.name, "is not a layer", "set it with --set");
        }
        layerControls.push_back(&control);
    }
    plan.requireInputs();
    bitDepth = options.depth != 0 ? options.depth : plan.input->bitDepth();
}

// A module is silent about its targets too, so that for these its files run as a folder does.
EffectSource Renderer::sourceToRender() const {
    EffectSource read = ReadCheckedSource(options.effect);
    if (!options.shown.empty()) read.isModule = false;
    return read;
}

std::shared_ptr<host::World> Renderer::render(const FrameInput& input) {
    auto output = effect.render(input);
    return options.shown.empty() ? output : ReadTarget(options.shown);
}

std::size_t Renderer::sweepSize() const {
    std::size_t size = 1;
    for (const Sweep& sweep : sweeps) size *= sweep.values.size();
    return size;
}

void Renderer::runSweep(
    const std::function<void(std::size_t place, const Picture& picture, const std::string& label)>& add) {
    const FrameInput input = read(plan.frames.front());
    for (std::size_t place = 0; place < sweepSize(); ++place) {
        std::string label;
        for (std::size_t i = 0; i < sweeps.size(); ++i) {
            const auto& [control, values] = sweeps[i];
            const std::size_t columns = sweeps.size() - 1 == i ? 1 : sweepColumns();
            const auto& [text, value] = values[place / columns % values.size()];
            effect.set(*control, [chosen = value](double) { return chosen; });
            label += fmt::format("{}{} {}", i != 0 ? "  " : "", control->declared.uniformName, text);
        }
        add(place, PictureOf(*render(input)), label);
    }
}

void Renderer::run(const Steps& steps) {
    const unsigned cores = std::max(std::thread::hardware_concurrency(), 1u);
    const unsigned threads = options.threads != 0 ? options.threads : std::max(cores / options.jobs, 1u);
    UseThreads(threads > 1 ? threads : 0);
    const PictureExtent extent = plan.input->fullExtent();
    const std::uint64_t frameBytes = std::uint64_t{extent.width} * extent.height * bitDepth / 2;
    FramePipeline<FrameInput, EncodedFrame> pipeline(
        {.read = [this](std::int32_t frame) { return read(frame); },
         .render = [this](std::int32_t, const FrameInput& input) { return render(input); },
         .write = [&](std::int32_t frame,
                      const host::World& picture) { return steps.encode(frame, PictureOf(picture)); },
         .report = steps.report,
         .isStopped = steps.isStopped},
        threads, FramesInFlight(frameBytes * (1 + plan.layers.size()), threads, options.jobs),
        plan.allFrames().size() > 1);
    pipeline.run(plan.frames);
}

PictureExtent Renderer::openInput() {
    plan.input->open(plan.allFrames().front());
    return plan.input->fullExtent();
}

void Renderer::setControls() {
    Keyframes keyframes(effect.controls());
    for (const std::string& key : options.keys) keyframes.addOption(key);
    for (const std::filesystem::path& table : options.keyTables) keyframes.addFile(table);
    for (const auto& [name, text] : plan.values) {
        const Control& control = FindControl(effect.controls(), name);
        if (keyframes.tracks().contains(&control))
            throw WrongCommandLine(name, "has keys and a --set", "leave one of them out");
        effect.set(control, [value = ParseControlValue(control.declared, text)](double) { return value; });
    }
    for (const std::string& text : options.sweeps) {
        sweeps.push_back(ParseSweep(effect.controls(), text));
        const Control* const control = sweeps.back().control;
        const auto isSet = [&](const auto& value) { return &FindControl(effect.controls(), value.first) == control; };
        if (keyframes.tracks().contains(control) || std::ranges::any_of(plan.values, isSet) ||
            (sweeps.size() > 1 && sweeps.front().control == control))
            throw WrongCommandLine(control->declared.uniformName, "has a sweep and another value", "keep one of them");
    }
    if (sweepSize() > ContactSheet::kMostPictures)
        throw WrongCommandLine("--sweep",
                               fmt::format("a sheet shows at most {} pictures", ContactSheet::kMostPictures));
    for (const auto& [control, track] : keyframes.tracks()) {
        // To a millionth, so that a frame's time leads back to its number.
        effect.set(*control, [track = track, rate = plan.framesPerSecond](double seconds) {
            return track.at(std::round(seconds * rate * 1e6) / 1e6);
        });
    }
}

FrameInput Renderer::read(std::int32_t frame) {
    FrameInput input;
    input.time = plan.timeOf(frame);
    const HostPicture picture = plan.input->read(frame, bitDepth);
    input.picture = picture.world;
    input.fullExtent = picture.fullExtent;
    for (std::size_t i = 0; i < plan.layers.size(); ++i)
        input.layers.emplace_back(layerControls[i], plan.layers[i].pictures->read(frame, bitDepth).world);
    return input;
}

Diagnostics Renderer::warnings() const {
    Diagnostics warnings;
    if (options.host != host::HostKind::afterEffects) return warnings;
    const std::string config = effect.pathOf("config.xml");
    const auto add = [&](const std::string& text) { warnings.push_back(Found("config/flags", config, 0, 0, text)); };
    const std::uint32_t flags = LinkedEngine::Flags(), flags2 = LinkedEngine::Flags2();
    if (options.route != host::Route::classic && (flags2 & PF_OutFlag2_SUPPORTS_SMART_RENDER) == 0)
        add(fmt::format("FLAGS2 lacks 1024, so that hosts take the classic route; {} is what it should be",
                        kEngineOutFlags2));
    if ((bitDepth == 16 && (flags & PF_OutFlag_DEEP_COLOR_AWARE) == 0) ||
        (bitDepth == 32 && (flags2 & PF_OutFlag2_FLOAT_COLOR_AWARE) == 0))
        add(fmt::format(
            "FLAGS and FLAGS2 do not allow {} bits, which After Effects would not use; {} and {} allow all depths",
            bitDepth, kEngineOutFlags, kEngineOutFlags2));
    return warnings;
}

}  // namespace quillon::cli
