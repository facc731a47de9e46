#include "cli/RenderCommand.h"

#include <fmt/format.h>

#include <cstdio>
#include <utility>

#include "cli/EffectSession.h"
#include "cli/FrameRange.h"
#include "cli/PictureFormat.h"
#include "cli/PictureSource.h"
#include "cli/ProgressBar.h"

namespace quillon::cli {

namespace {

// NAME=VALUE; the value may hold further equals signs.
std::pair<std::string, std::string> SplitAssignment(const char* option, const std::string& text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos || equals == 0) {
        throw WrongCommandLine(fmt::format("{} {}: write it as NAME=VALUE", option, text));
    }
    return {text.substr(0, equals), text.substr(equals + 1)};
}

struct LayerInput {
    std::string name;
    PictureSource pictures;
};

// Everything about the command line that can be told before the effect is loaded.
class Plan {
public:
    explicit Plan(const RenderOptions& options) : range(ReadRange(options)) {
        RequireWritable(options.output);
        requirePattern(options.output);
        if (range && range->first + range->step <= range->last && !FindFramePattern(options.output)) {
            throw WrongCommandLine(
                fmt::format("{}: all frames would be written to one file; put #### or %04d into "
                            "its name",
                            options.output.string()));
        }
        const RawLayout layout{options.rawWidth, options.rawHeight, options.depth};
        checkInput(options.input, layout);
        bool hasRaw = IsRawPicture(options.input);
        for (const std::string& text : options.layers) {
            auto [name, file] = SplitAssignment("--layer", text);
            checkInput(file, layout);
            hasRaw = hasRaw || IsRawPicture(file);
            layers.push_back({name, PictureSource(file, layout)});
        }
        if (layout.width != 0 && !hasRaw) {
            throw WrongCommandLine("--size is for .argb pictures; others know their size");
        }
    }

    std::vector<std::int32_t> frames() const { return range ? range->frames() : std::vector<std::int32_t>{0}; }

    std::optional<FrameRange> range;  // nothing: one moment
    std::vector<LayerInput> layers;

private:
    static std::optional<FrameRange> ReadRange(const RenderOptions& options) {
        if (options.frames.empty()) return {};
        const auto range = ParseFrameRange(options.frames);
        if (!range) {
            throw WrongCommandLine(fmt::format(
                "--frames {}: write it as FIRST-LAST or FIRST-LASTxSTEP, as in 1-100 or 0-48x2", options.frames));
        }
        return range;
    }

    void requirePattern(const std::filesystem::path& path) const {
        if (FindFramePattern(path) && !range) {
            throw WrongCommandLine(
                fmt::format("{}: has a place for the frame number; say which frames with --frames", path.string()));
        }
    }

    void checkInput(const std::filesystem::path& path, const RawLayout& layout) const {
        requirePattern(path);
        if (IsRawPicture(path) && (layout.width == 0 || layout.bitDepth == 0)) {
            throw WrongCommandLine(
                fmt::format("{}: a raw buffer says nothing of itself; give --size and --depth", path.string()));
        }
    }
};

// All that one frame of the command needs.
class Renderer {
public:
    explicit Renderer(const RenderOptions& renderOptions)
        : options(renderOptions),
          plan(options),
          session(ReadEffectSource(options.effect)),
          input(options.input, {options.rawWidth, options.rawHeight, options.depth}) {
        for (const std::string& text : options.values) {
            const auto [name, value] = SplitAssignment("--set", text);
            const Control& control = FindControl(session.controls(), name);
            session.set(control, ParseControlValue(control.declared, value));
        }
        for (LayerInput& layer : plan.layers) {
            const Control& control = FindControl(session.controls(), layer.name);
            if (control.declared.kind != LAYER) {
                throw WrongCommandLine(fmt::format("{}: is not a layer; set it with --set", layer.name));
            }
            layerIndices.push_back(control.index);
        }
        const std::vector<std::int32_t> frames = plan.frames();
        bitDepth = options.depth != 0 ? options.depth : input.bitDepthAt(frames.front());
    }

    void run() {
        const std::vector<std::int32_t> frames = plan.frames();
        ProgressBar progress(frames.size());
        for (const std::int32_t frame : frames) {
            const std::filesystem::path output = PathOfFrame(options.output, frame);
            try {
                WritePicture(output, render(frame));
            } catch (ToolError& error) {
                if (frames.size() > 1) error.text += fmt::format("quillon: error: stopped at frame {}\n", frame);
                throw;
            }
            progress.clear();
            fmt::print("{}\n", output.string());
            std::fflush(stdout);
            progress.advance();
        }
    }

private:
    Picture render(std::int32_t frame) {
        FrameRequest request;
        request.timeSeconds = plan.range ? frame / options.framesPerSecond : options.timeSeconds;
        request.input = &input.at(frame, bitDepth);
        for (std::size_t i = 0; i < plan.layers.size(); ++i) {
            request.layers.emplace_back(layerIndices[i], &plan.layers[i].pictures.at(frame, bitDepth));
        }
        return session.render(request);
    }

    const RenderOptions& options;
    Plan plan;
    EffectSession session;
    PictureSource input;
    std::vector<std::uint32_t> layerIndices;  // of plan.layers
    std::uint32_t bitDepth = 0;
};

}  // namespace

int RunRender(const RenderOptions& options) {
    Renderer(options).run();
    return 0;
}

}  // namespace quillon::cli
