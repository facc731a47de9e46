#include "cli/commands/Commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>
#include <thread>
#include <utility>

#include "cli/commands/RenderPlan.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/effect/LinkedEngine.h"
#include "cli/effect/LoadedEffect.h"
#include "cli/keyframes/Keyframes.h"
#include "cli/movie/Movie.h"
#include "cli/pictures/PictureFormat.h"
#include "cli/sequence/FramePipeline.h"
#include "package/EffectFlags.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

namespace {

// A sequence, or one moment.
class Renderer {
public:
    explicit Renderer(const RenderOptions& renderOptions)
        : options(renderOptions),
          plan(options),
          source(ReadCheckedSource(options.effect)),
          effect(std::move(source), plan.settings(openInput())) {
        setControls();
        for (RenderPlan::Layer& layer : plan.layers) {
            const Control& control = FindControl(effect.controls(), layer.name);
            if (control.declared.kind != LAYER) {
                throw WrongCommandLine(layer.name, "is not a layer", "set it with --set");
            }
            layerControls.push_back(&control);
            layer.pictures->requireAll(plan.frames);
        }
        plan.input->requireAll(plan.frames);
        bitDepth = options.depth != 0 ? options.depth : plan.input->bitDepth();
        warn();
    }

    void run() {
        const unsigned threads =
            options.threads != 0 ? options.threads : std::max(std::thread::hardware_concurrency(), 1u);
        UseThreads(threads > 1 ? threads : 0);
        const std::unique_ptr<FrameOutput> output = MakeFrameOutput(outputOptions());
        Progress progress(options.progress, plan.frames.size());
        std::size_t done = 0;
        announce(done);
        const PictureExtent extent = plan.input->fullExtent();
        const std::uint64_t frameBytes = std::uint64_t{extent.width} * extent.height * bitDepth / 2;
        FramePipeline<FrameInput> pipeline(
            {.read = [this](std::int32_t frame) { return read(frame); },
             .render = [this](std::int32_t, const FrameInput& input) { return effect.render(input); },
             .write = [&](std::int32_t frame,
                          const host::World& picture) { return output->encode(frame, PictureOf(picture)); },
             .report =
                 [&](std::int32_t frame, const FrameTimes& times, std::vector<std::byte> bytes) {
                     progress.report(frame, output->add(frame, std::move(bytes)), times);
                     announce(++done);
                 }},
            threads, FramesInFlight(frameBytes * (1 + plan.layers.size()), threads));
        pipeline.run(plan.frames);
        if (const std::string path = output->finish(); !path.empty()) PrintResult(path);
    }

private:
    OutputOptions outputOptions() const {
        OutputOptions output{.path = options.output,
                             .storage = options.storage,
                             .stream = options.stream.value_or(StreamForm::raw),
                             .background = options.background,
                             .movie = {.framesPerSecond = plan.framesPerSecond, .codecArgs = {}}};
        output.storage.framesPerSecond = plan.allFrames().size() > 1 ? plan.framesPerSecond : 0;
        output.storage.pixelAspect = static_cast<double>(options.pixelAspect.num) / options.pixelAspect.den;
        std::istringstream words(options.codecArgs);
        for (std::string word; words >> word;) output.movie.codecArgs.push_back(word);
        return output;
    }

    // For an interrupt that may come.
    void announce(std::size_t done) const {
        if (plan.frames.size() < 2) return;
        const bool isFiles = !IsStandardOutput(options.output) && !IsMovieOutput(options.output);
        SetWordsAtSignals(fmt::format("\nquillon: stopped after {} of {} frames{}\n", done, plan.frames.size(),
                                      isFiles ? "; the same command with --resume goes on" : ""));
    }

    PictureExtent openInput() {
        plan.input->open(plan.allFrames().front());
        return plan.input->fullExtent();
    }

    void setControls() {
        Keyframes keyframes(effect.controls());
        for (const std::string& key : options.keys) keyframes.addOption(key);
        for (const std::filesystem::path& table : options.keyTables) keyframes.addFile(table);
        for (const auto& [name, text] : plan.values) {
            const Control& control = FindControl(effect.controls(), name);
            if (keyframes.tracks().contains(&control))
                throw WrongCommandLine(name, "has keys and a --set", "leave one of them out");
            effect.set(control, [value = ParseControlValue(control.declared, text)](double) { return value; });
        }
        for (const auto& [control, track] : keyframes.tracks()) {
            // To a millionth, so that a frame's time leads back to its number.
            effect.set(*control, [track = track, rate = plan.framesPerSecond](double seconds) {
                return track.at(std::round(seconds * rate * 1e6) / 1e6);
            });
        }
    }

    FrameInput read(std::int32_t frame) {
        FrameInput input;
        input.time = plan.timeOf(frame);
        const HostPicture picture = plan.input->read(frame, bitDepth);
        input.picture = picture.world;
        input.fullExtent = picture.fullExtent;
        for (std::size_t i = 0; i < plan.layers.size(); ++i)
            input.layers.emplace_back(layerControls[i], plan.layers[i].pictures->read(frame, bitDepth).world);
        return input;
    }

    // Where an artist's host would not do what is done here, since the effect's flags tell it otherwise.
    void warn() const {
        if (options.host != host::HostKind::afterEffects) return;
        const std::string config = effect.pathOf("config.xml");
        const auto say = [&](const std::string& text) {
            PrintDiagnostics({{.path = config,
                               .severity = Diagnostic::Severity::warning,
                               .text = text,
                               .kind = Diagnostic::Kind::config}});
        };
        const std::uint32_t flags = LinkedEngine::Flags(), flags2 = LinkedEngine::Flags2();
        if (options.route != host::Route::classic && (flags2 & PF_OutFlag2_SUPPORTS_SMART_RENDER) == 0)
            say(fmt::format("FLAGS2 lacks 1024, so that hosts take the classic route; {} is what it should be",
                            kEngineOutFlags2));
        if ((bitDepth == 16 && (flags & PF_OutFlag_DEEP_COLOR_AWARE) == 0) ||
            (bitDepth == 32 && (flags2 & PF_OutFlag2_FLOAT_COLOR_AWARE) == 0))
            say(fmt::format(
                "FLAGS and FLAGS2 do not allow {} bits, which After Effects would not use; {} and {} allow all depths",
                bitDepth, kEngineOutFlags, kEngineOutFlags2));
    }

    const RenderOptions& options;
    RenderPlan plan;
    EffectSource source;  // until the effect takes it
    LoadedEffect effect;
    std::vector<const Control*> layerControls;  // of plan.layers
    std::uint32_t bitDepth = 0;
};

}  // namespace

int RunRender(const RenderOptions& options) {
    Renderer(options).run();
    return 0;
}

}  // namespace quillon::cli
