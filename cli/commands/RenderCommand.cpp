#include "cli/commands/Commands.h"

#include <fmt/format.h>

#include <cstdio>
#include <utility>

#include "cli/commands/RenderPlan.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ProgressBar.h"
#include "cli/effect/LinkedEngine.h"
#include "cli/effect/LoadedEffect.h"
#include "cli/pictures/PictureFormat.h"
#include "package/EffectFlags.h"

namespace quillon::cli {

namespace {

// All that one frame of the command needs.
class Renderer {
public:
    explicit Renderer(const RenderOptions& renderOptions)
        : options(renderOptions),
          plan(options),
          frames(plan.frames()),
          source(ReadCheckedSource(options.effect)),
          effect(std::move(source), plan.settings(plan.input.fullExtentAt(frames.front()))) {
        for (const auto& [name, text] : plan.values) {
            const Control& control = FindControl(effect.controls(), name);
            effect.set(control, ParseControlValue(control.declared, text));
        }
        for (const RenderPlan::Layer& layer : plan.layers) {
            const Control& control = FindControl(effect.controls(), layer.name);
            if (control.declared.kind != LAYER) {
                throw WrongCommandLine(layer.name, "is not a layer", "set it with --set");
            }
            layerControls.push_back(&control);
        }
        bitDepth = options.depth != 0 ? options.depth : plan.input.bitDepthAt(frames.front());
        warn();
    }

    void run() {
        ProgressBar progress(frames.size());
        for (const std::int32_t frame : frames) {
            const std::filesystem::path output = PathOfFrame(options.output, frame);
            try {
                WritePicture(output, render(frame));
            } catch (ToolError& error) {
                if (frames.size() > 1) {
                    error.faults.push_back(
                        {.text = fmt::format("stopped at frame {}", frame), .kind = Diagnostic::Kind::tool});
                }
                throw;
            }
            progress.clear();
            PrintResult(output.string());
            progress.advance();
        }
    }

private:
    Picture render(std::int32_t frame) {
        FrameInput input;
        input.time = plan.timeOf(frame);
        input.fullExtent = plan.input.fullExtentAt(frame);
        input.picture = plan.input.at(frame, bitDepth);
        for (std::size_t i = 0; i < plan.layers.size(); ++i) {
            input.layers.emplace_back(layerControls[i], plan.layers[i].pictures.at(frame, bitDepth));
        }
        return effect.render(input);
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
    std::vector<std::int32_t> frames;
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
