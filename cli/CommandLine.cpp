#include "cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <functional>

#include "cli/ChartCommand.h"
#include "cli/RenderCommand.h"
#include "cli/TextScanner.h"
#include "cli/ToolError.h"

namespace quillon::cli {

namespace {

using Run = std::function<int()>;

constexpr const char* kAbout =
    "Renders shader effects at their author's desk.\n"
    "\n"
    "An effect is a folder with a program fx.js, fragment shaders *.frag, a config.xml and whatever pictures it\n"
    "needs. First steps:\n"
    "\n"
    "  quillon chart -o chart.png\n"
    "  quillon render effects/glow -i chart.png -o glow.png\n"
    "\n"
    "Results go to standard output, words to standard error. Exit status: 0 when all went well, 1 when the effect\n"
    "or a file is at fault, 2 for a wrong command line.";

constexpr const char* kRenderAbout =
    "Renders an effect over a picture, or over a sequence of pictures, and prints the path of each that is written.";

constexpr const char* kRenderMore =
    "Pictures: PNG (8 or 16 bits), EXR and .argb are read and written; JPEG, BMP, GIF, PSD, Radiance HDR and TGA are\n"
    "read. Colour is never converted: PNG is sRGB and EXR linear by custom, and the effect gets the numbers as they\n"
    "are. PNG output has 8 bits at --depth 8 and 16 bits above; EXR output has 32-bit floats.\n"
    "A file named *.argb is the host's own buffer: tight rows, the top row first, four channels A, R, G, B, each one\n"
    "byte, a 16-bit word 0 to 32768 or a 32-bit float, little-endian, without a header.\n"
    "\n"
    "Controls (--set) go by their name in the shader or by their label:\n"
    "  number, angle      --set threshold=0.5         angles in degrees\n"
    "  position           --set center=480,270        pixels from the top left corner; x,y,z for three axes\n"
    "  colour             --set tint=1,0.5,0          0 to 1, with or without a fourth for alpha; or #ff8000[ff]\n"
    "  switch             --set \"Grow the layer=true\" true, false, 1 or 0\n"
    "  popup              --set mode=Screen           an entry's text, or its number from 1\n"
    "Controls that are not set have their default.\n"
    "\n"
    "Sequences: with --frames the output's name has a place for the frame number, #### or %04d; the names of input\n"
    "and layers may have one, else the one picture serves all frames. Frame F stands at F / fps seconds.\n"
    "\n"
    "  quillon render effects/lens -i shot.####.exr -o out/lens.####.exr --frames 1-100 --fps 24 --set k1=0.3";

// WIDTHxHEIGHT into two numbers.
void AddSize(CLI::App& command, std::uint32_t& width, std::uint32_t& height, const std::string& description) {
    const auto read = [&width, &height](const std::string& text) {
        std::string_view rest = text;
        const auto columns = TakeNumber(rest);
        const bool hasRows = TakeText(rest, "x");
        const auto rows = TakeNumber(rest);
        const auto isExtent = [](const std::optional<int>& number) {
            return number && *number > 0 && *number < 100000;
        };
        if (!isExtent(columns) || !hasRows || !isExtent(rows) || !rest.empty()) {
            throw CLI::ValidationError("--size " + text, "write it as WIDTHxHEIGHT, as in 1920x1080");
        }
        width = static_cast<std::uint32_t>(*columns);
        height = static_cast<std::uint32_t>(*rows);
    };
    command.add_option_function<std::string>("--size", read, description)->type_name("WIDTHxHEIGHT");
}

void AddRender(CLI::App& app, Run& run) {
    auto options = std::make_shared<RenderOptions>();
    CLI::App& command = *app.add_subcommand("render", kRenderAbout);
    command.footer(kRenderMore);
    command.add_option("EFFECT", options->effect, "The effect's folder")->required()->type_name("");
    command.add_option("-i,--input", options->input, "The picture that the effect is applied to")
        ->required()
        ->type_name("FILE");
    command.add_option("-o,--output", options->output, "Where the result goes: .png, .exr or .argb")
        ->required()
        ->type_name("FILE");
    command
        .add_option("--depth", options->depth,
                    "Bits per channel that the host uses: 8, 16 or 32; default: what the input has")
        ->check(CLI::IsMember({8, 16, 32}))
        ->type_name("BITS");
    command.add_option("--set", options->values, "A control; may be given several times")
        ->allow_extra_args(false)
        ->type_name("NAME=VALUE");
    command.add_option("--layer", options->layers, "A picture for a layer control; may be given several times")
        ->allow_extra_args(false)
        ->type_name("NAME=FILE");
    CLI::Option* time =
        command.add_option("--time", options->timeSeconds, "The moment to render; default 0")->type_name("SECONDS");
    CLI::Option* frames = command.add_option("--frames", options->frames, "A sequence, both ends included")
                              ->excludes(time)
                              ->type_name("FIRST-LAST[xSTEP]");
    command.add_option("--fps", options->framesPerSecond, "Frames per second of the sequence; default 25")
        ->needs(frames)
        ->check(CLI::PositiveNumber)
        ->type_name("NUMBER");
    AddSize(command, options->rawWidth, options->rawHeight,
            "Extent of .argb pictures that are read, which need --depth too");
    command.callback([&run, options] { run = [options] { return RunRender(*options); }; });
}

void AddChart(CLI::App& app, Run& run) {
    auto options = std::make_shared<ChartOptions>();
    CLI::App& command = *app.add_subcommand(
        "chart", "Writes a test picture: ramps, patches, fine lines, round shapes, lights and soft transparent parts.");
    command.add_option("-o,--output", options->output, "Where it goes: .png, .exr or .argb (8 bits)")
        ->required()
        ->type_name("FILE");
    AddSize(command, options->width, options->height, "Its extent in pixels; default 960x540");
    command.callback([&run, options] { run = [options] { return RunChart(*options); }; });
}

}  // namespace

int RunCommandLine(int argc, char** argv) {
    Run run;
    CLI::App app(kAbout, "quillon");
    app.set_version_flag("--version", "quillon " QUILLON_VERSION);
    app.require_subcommand(0, 1);
    AddRender(app, run);
    AddChart(app, run);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) return app.exit(error);  // help and version
        const auto commands = app.get_subcommands();
        const std::string command = commands.empty() ? "" : commands.front()->get_name() + " ";
        throw WrongCommandLine(std::string(error.what()) + "; see quillon " + command + "--help");
    }
    if (!run) throw WrongCommandLine("no command; name one of those that quillon --help lists");
    return run();
}

}  // namespace quillon::cli
