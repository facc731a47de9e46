#include "cli/commands/CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <initializer_list>
#include <map>
#include <sstream>
#include <utility>

#include "cli/commands/Commands.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/TextScanner.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/effect/ControlValues.h"
#include "cli/system/ModuleKind.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

using Run = std::function<int()>;

// {}: the ending of modules on this system, the only one whose template is sure to be there.
constexpr const char* kAbout =
    "Renders shader effects at their author's desk, and makes the modules that hosts load.\n"
    "\n"
    "An effect is a folder with a program fx.js, fragment shaders *.frag, a config.xml and whatever pictures it\n"
    "needs, or the module that such a folder is packed into. First steps:\n"
    "\n"
    "  quillon chart -o chart.png\n"
    "  quillon render effects/glow -i chart.png -o glow.png\n"
    "  quillon check effects/glow\n"
    "  quillon pack effects/glow -o glow{}\n"
    "\n"
    "Results go to standard output, words to standard error. Exit status: 0 when all went well, 1 when the effect\n"
    "or a file is at fault, 2 for a wrong command line.";

constexpr const char* kRenderAbout =
    "Renders an effect over a picture, or over a sequence of pictures, and prints the path of each that is written.\n"
    "The effect runs as in the hosts that load its module; the tool plays the host.";

constexpr const char* kRenderMore =
    "Pictures: PNG (8 or 16 bits), EXR, TIFF and .argb are read and written; JPEG, BMP, GIF, PSD, Radiance HDR and TGA "
    "are\n"
    "read. Color is never converted: PNG is sRGB and EXR linear by custom, and the effect gets the numbers as they\n"
    "are. PNG output has 8 bits at --depth 8 and 16 bits above; EXR output has floats, or halves with --exr half.\n"
    "A file named *.argb is the host's own buffer: tight rows, the top row first, four channels A, R, G, B, each one\n"
    "byte, a 16-bit word 0 to 32768 or a 32-bit float, little-endian, without a header.\n"
    "\n"
    "Controls (--set) go by their name in the shader or by their label:\n"
    "  number, angle      --set threshold=0.5         angles in degrees\n"
    "  position           --set center=480,270        pixels from the top left corner; x,y,z for three axes\n"
    "  color             --set tint=1,0.5,0          0 to 1, with or without a fourth for alpha; or #ff8000[ff]\n"
    "  switch             --set \"Grow the layer=true\" true, false, 1 or 0\n"
    "  popup              --set mode=Screen           an entry's text, or its number from 1\n"
    "Controls that are not set have their default.\n"
    "\n"
    "Sequences: with --frames the output's name has a place for the frame number, #### or %04d; the names of input\n"
    "and layers may have one, else the one picture serves all frames. Frame F is at F / fps seconds.\n"
    "\n"
    "--part, --resume and -j split and continue it, with the same pictures, unless the effect keeps something from\n"
    "frame to frame: then each process begins anew. With -j a warning says so.\n"
    "\n"
    "Movies go in and out through the program ffmpeg. Of a movie without --frames all frames are rendered. .mov and "
    ".webm\n"
    "keep alpha, .mp4 is placed on --background. -o - writes frames for other programs, see --format.\n"
    "\n"
    "  quillon render effects/glow -i shot.mov -o shot.mp4 --key radius@0=0 --key radius@48=200~smooth\n"
    "\n"
    "Controls move with --key amount@0=0 --key amount@24=1~smooth or with a table. A key's way, linear unless it says\n"
    "hold or smooth, leads to the next key; outside of the keys the nearest one holds.\n"
    "\n"
    "  quillon render effects/lens -i shot.####.exr -o out/lens.####.exr --frames 1-100 --fps 24 --set k1=0.3\n"
    "\n"
    "  quillon render effects/glow -i in.png --contact-sheet glow.png --sweep radius=0,50,200 --sweep intensity=1,3\n"
    "\n"
    "Hosts: the smart route gives the input's size, or what the effect asks for. The classic route, which Premiere "
    "Pro\n"
    "always takes, rounds as the hosts do: at full size its picture is a column and a row smaller, and Premiere Pro\n"
    "shows it within a picture of the input's size. At --downsample N every picture is brought to 1/N of its size\n"
    "first (the mean of N by N pixels, colors weighed by alpha); positions are still given in full-size pixels.\n"
    "\n"
    "A folder is rendered by the tool's own engine, which reports faults with their lines and gives the same pixels "
    "as\n"
    "the packed module. A module is silent about faults: each of its frames is rehearsed by the tool's engine first,\n"
    "without filling pixels; what only goes wrong with pixels in their place is seen in the picture.";

// Two numbers with a separator between them, each from `least` to 99999, into two places.
template <class First, class Second>
CLI::Option* AddPair(CLI::App& command, const char* option, char separator, int least, const char* form,
                     const char* example, First& first, Second& second, const std::string& description) {
    const auto read = [=, &first, &second](const std::string& text) {
        std::string_view rest = text;
        const auto left = TakeNumber(rest);
        const bool isParted = TakeText(rest, std::string_view(&separator, 1));
        const auto right = TakeNumber(rest);
        const auto fits = [least](const std::optional<int>& number) {
            return number && *number >= least && *number < 100000;
        };
        if (!fits(left) || !isParted || !fits(right) || !rest.empty()) {
            throw CLI::ValidationError(std::string(option) + " " + text,
                                       std::string("write it as ") + form + ", as in " + example);
        }
        first = static_cast<First>(*left);
        second = static_cast<Second>(*right);
    };
    return command.add_option_function<std::string>(option, read, description)->type_name(form);
}

// One of some words, each for a value.
template <class Value, class Target>
void AddChoice(CLI::App& command, const char* option, std::initializer_list<std::pair<const char*, Value>> choices,
               const char* form, Target& target, const std::string& description) {
    std::map<std::string, Value> values;
    std::vector<std::string> names;
    for (const auto& [name, value] : choices) {
        values.emplace(name, value);
        names.push_back(name);
    }
    command
        .add_option_function<std::string>(
            option, [values, &target](const std::string& name) { target = values.at(name); }, description)
        ->check(CLI::IsMember(names))
        ->type_name(form);
}

CLI::Option* AddPath(CLI::App& command, const char* option, std::filesystem::path& path,
                     const std::string& description) {
    return command.add_option_function<std::string>(
        option, [&path](const std::string& text) { path = PathFromUtf8(text); }, description);
}

void AddSize(CLI::App& command, const char* option, std::uint32_t& width, std::uint32_t& height,
             const std::string& description) {
    AddPair(command, option, 'x', 1, "WIDTHxHEIGHT", "1920x1080", width, height, description);
}

void AddHost(CLI::App& command, RenderOptions& options) {
    AddChoice<host::HostKind>(
        command, "--host", {{"after-effects", host::HostKind::afterEffects}, {"premiere", host::HostKind::premiere}},
        "HOST", options.host, "The host that is played: after-effects or premiere; default after-effects");
    AddPair(command, "--host-version", '.', 0, "MAJOR.MINOR", "13.9", options.hostVersionMajor,
            options.hostVersionMinor, "The version of the effect interface that it speaks; default 13.9");
    AddChoice<host::Route>(command, "--route", {{"classic", host::Route::classic}, {"smart", host::Route::smart}},
                           "ROUTE", options.route, "How After Effects renders: smart or classic; default smart");
    command
        .add_option("--downsample", options.downsample,
                    "Renders at 1/N of the size, as a host's preview does: 1 to 64; default 1")
        ->check(CLI::Range(1, 64))
        ->type_name("N");
    AddPair(command, "--pixel-aspect", '/', 1, "NUM/DEN", "16/15", options.pixelAspect.num, options.pixelAspect.den,
            "Width to height of a pixel, of layer and composition; default 1/1");
    AddSize(command, "--comp", options.compWidth, options.compHeight,
            "Extent of the composition around the layer; default: the input's");
}

void AddStorage(CLI::App& command, StorageOptions& storage) {
    command
        .add_option("--png-level", storage.pngLevel,
                    "How hard PNG is compressed, 0 to 9: from not at all to smallest; default 1, which is fast")
        ->check(CLI::Range(0, 9))
        ->type_name("N");
    AddChoice<bool>(command, "--exr", {{"half", true}, {"float", false}}, "TYPE", storage.isExrHalf,
                    "What EXR stores: half, or float, which is exact; default float");
    command
        .add_option(
            "--exr-compression", storage.exrCompression,
            "How EXR is compressed: none, rle, zips, zip, piz, or with loss dwaa, dwab; default piz for half, rle\n"
            "for float")
        ->check(CLI::IsMember(std::vector<std::string>(std::begin(kExrCompressions), std::end(kExrCompressions))))
        ->type_name("NAME");
    command.add_flag_callback(
        "--no-alpha", [&storage] { storage.hasAlpha = false; },
        "Writes red, green and blue only, and leaves them as they are");
}

void AddSequence(CLI::App& command, RenderOptions& options) {
    command.add_option("--key", options.keys, "A control's value at a frame; may be given several times")
        ->allow_extra_args(false)
        ->type_name("NAME@FRAME=VALUE[~hold|~linear|~smooth]");
    command
        .add_option_function<std::vector<std::string>>(
            "--keys",
            [&options](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) options.keyTables.push_back(PathFromUtf8(text));
            },
            "A table of such values, .csv or .json; may be given several times")
        ->allow_extra_args(false)
        ->type_name("FILE");
    command
        .add_option("--threads", options.threads,
                    "Threads that read and write pictures while others are rendered, 1 to 256; default: the cores")
        ->check(CLI::Range(1, 256))
        ->type_name("N");
    command
        .add_option("-j,--jobs", options.jobs,
                    "Processes that render, each a piece of the sequence, 1 to 256; default 1")
        ->check(CLI::Range(1, 256))
        ->type_name("N");
    AddPair(command, "--part", '/', 1, "I/N", "2/8", options.part, options.parts,
            "Renders only the I-th of N pieces of the sequence");
    command.add_flag("--resume", options.isResumed, "Leaves out the frames whose output is there already");
    AddChoice<ProgressForm>(
        command, "--progress", {{"bar", ProgressForm::bar}, {"json", ProgressForm::json}, {"none", ProgressForm::none}},
        "FORM", options.progress,
        "On standard error: bar, on a terminal only; json, a line for each frame; or none; default bar");
}

void AddLooks(CLI::App& command, RenderOptions& options) {
    command
        .add_option("--show", options.shown,
                    "Writes a render target of the effect in place of its output: by the script's variable, or by its\n"
                    "number in what quillon info lists")
        ->type_name("TARGET");
    command
        .add_option(
            "--sweep", options.sweeps,
            "Renders one frame at each of these values, for --contact-sheet; twice for a grid; semicolons part\n"
            "values with commas")
        ->allow_extra_args(false)
        ->type_name("NAME=VALUE,VALUE,...");
    AddPath(command, "--contact-sheet", options.contactSheet,
            "One picture of all frames, or of the values of --sweep, small and with labels; -o may be left out")
        ->type_name("FILE");
}

void AddStreams(CLI::App& command, RenderOptions& options) {
    AddChoice<StreamForm>(
        command, "--format", {{"raw", StreamForm::raw}, {"y4m", StreamForm::y4m}}, "FORM", options.stream,
        "What -o - writes: raw, the bytes of .argb, or y4m, for programs that read video; default raw");
    const auto readColor = [&options](const std::string& text) {
        Parameter color;
        color.uniformName = "--background";
        color.kind = COLOR;
        const ControlValue value = ParseControlValue(color, text);
        options.background = {value.numbers[0], value.numbers[1], value.numbers[2]};
    };
    command
        .add_option_function<std::string>("--background", readColor,
                                          "What shows through in .mp4 and y4m, which have no alpha; default black")
        ->type_name("COLOR");
    command.add_option("--codec-args", options.codecArgs, "Further arguments for ffmpeg, parted by blanks")
        ->type_name("TEXT");
}

void AddRender(CLI::App& app, Run& run, const std::vector<std::string>& arguments,
               const std::function<int(const RenderOptions&)>& render) {
    auto options = std::make_shared<RenderOptions>();
    options->arguments = arguments;
    CLI::App& command = *app.add_subcommand("render", kRenderAbout);
    command.footer(kRenderMore);
    AddPath(command, "EFFECT", options->effect, "The effect's folder, or a packed module")->required()->type_name("");
    AddPath(command, "-i,--input", options->input, "The picture that the effect is applied to")
        ->required()
        ->type_name("FILE");
    AddPath(command, "-o,--output", options->output,
            "Where the result goes: .png, .exr, .tif or .argb, a movie .mp4, .mov, .webm or .gif, or - for\n"
            "standard output; must be given unless there is a --contact-sheet")
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
    command.add_option("--frames", options->frames, "A sequence, both ends included")
        ->excludes(time)
        ->type_name("FIRST-LAST[xSTEP]");
    command.add_option("--fps", options->framesPerSecond, "Frames per second; default: those of a movie, else 25")
        ->excludes(time)
        ->check(CLI::Range(0.001, 100000.0))
        ->type_name("NUMBER");
    AddSize(command, "--size", options->rawWidth, options->rawHeight,
            "Extent of .argb pictures that are read, which need --depth too");
    AddStorage(command, options->storage);
    AddSequence(command, *options);
    AddStreams(command, *options);
    AddLooks(command, *options);
    AddHost(command, *options);
    command.callback([&run, options, render] { run = [options, render] { return render(*options); }; });
}

void AddChart(CLI::App& app, Run& run) {
    auto options = std::make_shared<ChartOptions>();
    CLI::App& command = *app.add_subcommand(
        "chart", "Writes a test picture: ramps, patches, fine lines, round shapes, lights and soft transparent parts.");
    AddPath(command, "-o,--output", options->output, "Where it goes: .png, .exr, .tif or .argb (8 bits)")
        ->required()
        ->type_name("FILE");
    AddSize(command, "--size", options->width, options->height, "Its extent in pixels; default 960x540");
    command.callback([&run, options] { run = [options] { return RunChart(*options); }; });
}

void AddParams(CLI::App& app, Run& run) {
    auto options = std::make_shared<ParamsOptions>();
    CLI::App& command = *app.add_subcommand(
        "params", "Lists the effect's controls as its host has them, in the host's order, with every field.");
    AddPath(command, "EFFECT", options->effect, "The effect's folder, or a packed module")->required()->type_name("");
    command.add_flag("--json", options->isJson, "As a JSON array of objects, for programs");
    command.callback([&run, options] { run = [options] { return RunParams(*options); }; });
}

void AddInfo(CLI::App& app, Run& run) {
    auto options = std::make_shared<InfoOptions>();
    CLI::App& command = *app.add_subcommand("info",
                                            "Says what an effect is: name and version, flags, controls, shaders with "
                                            "their uniforms, targets, textures and\n"
                                            "files. Reads modules for any system, and frei0r plug-ins.");
    AddPath(command, "EFFECT", options->effect, "The effect's folder, or a packed module")->required()->type_name("");
    command.add_flag("--json", options->isJson, "As a JSON object, for programs");
    command.add_option("--rewritten", options->rewritten, "Prints this shader as the graphics driver gets it instead")
        ->type_name("FILE");
    command.callback([&run, options] { run = [options] { return RunInfo(*options); }; });
}

void AddCheck(CLI::App& app, Run& run) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *app.add_subcommand(
        "check",
        "Reports what is wrong with an effect, with file and line: in its files, its config.xml, its script and its\n"
        "shaders, up to a frame at 8, 16 and 32 bits with its controls at their defaults.");
    AddPath(command, "EFFECT", options->effect, "The effect's folder, or a packed module")->required()->type_name("");
    command.callback([&run, options] { run = [options] { return RunCheck(*options); }; });
}

void AddPack(CLI::App& app, Run& run) {
    auto options = std::make_shared<PackOptions>();
    CLI::App& command = *app.add_subcommand(
        "pack",
        "Makes the module that a host loads, from an effect's folder, and prints its path. Warns of what looks wrong\n"
        "in config.xml and of files that are hardly a part of the effect. Scripts and shaders are packed as they are;\n"
        "check finds what is wrong with them.");
    AddPath(command, "FOLDER", options->folder, "The effect's folder")->required()->type_name("");
    AddPath(command, "-o,--output", options->output,
            "The module: a name that ends in .so for Linux, in .aex for Windows")
        ->required()
        ->type_name("MODULE");
    command.add_flag("--list", options->isListed, "Prints the size and the name of each file in the module, too");
    command
        .add_option_function<std::string>(
            "--for", [options](const std::string&) { options->isForFrei0r = true; },
            "A plug-in for open video tools instead: frei0r, for ffmpeg, melt and Kdenlive. Runs the effect's setup()")
        ->check(CLI::IsMember({"frei0r"}))
        ->type_name("HOSTS");
    command.callback([&run, options] { run = [options] { return RunPack(*options); }; });
}

void AddCompare(CLI::App& app, Run& run) {
    auto options = std::make_shared<CompareOptions>();
    CLI::App& command = *app.add_subcommand(
        "compare",
        "Says how two pictures, or two sequences, differ: largest and mean difference of each channel, in units of "
        "the\n"
        "deeper one, and how many pixels differ. Exit status 1 when one differs by more than is allowed.");
    AddPath(command, "A", options->first, "A picture, or a pattern for --frames")->required()->type_name("");
    AddPath(command, "B", options->second, "The other one")->required()->type_name("");
    command.add_option("--fail", options->limit, "A pixel fails when a channel differs by more; default 0")
        ->check(CLI::NonNegativeNumber)
        ->type_name("N");
    command.add_option("--fail-percent", options->limitPercent, "How many percent of the pixels may fail; default 0")
        ->check(CLI::Range(0.0, 100.0))
        ->type_name("P");
    AddPath(command, "-o,--output", options->output,
            "Draws the difference: black where equal, the largest at full scale")
        ->type_name("FILE");
    command.add_option("--frames", options->frames, "The frames of patterns")->type_name("FIRST-LAST[xSTEP]");
    AddSize(command, "--size", options->rawWidth, options->rawHeight, "Extent of .argb pictures");
    command.add_option("--depth", options->depth, "Bits per channel of .argb pictures: 8, 16 or 32")
        ->check(CLI::IsMember({8, 16, 32}))
        ->type_name("BITS");
    command.callback([&run, options] { run = [options] { return RunCompare(*options); }; });
}

void AddNew(CLI::App& app, Run& run) {
    auto options = std::make_shared<NewOptions>();
    CLI::App& command = *app.add_subcommand(
        "new",
        "Makes the folder of a new effect from a shader file, and prints its path. The file is ISF (a JSON header, "
        "then\n"
        "GLSL) or a fragment with mainImage. What is carried over in another form is printed as warnings; a file that\n"
        "cannot be carried over is refused, with the lines and the reasons, and leaves no folder.");
    AddPath(command, "NAME", options->folder, "The new folder; its last part is the effect's name")
        ->required()
        ->type_name("");
    AddPath(command, "--from", options->from, "The shader file, or a saved project of mainImage passes")
        ->required()
        ->type_name("FILE");
    AddPath(command, "--common", options->common, "Text in front of all mainImage passes")->type_name("FILE");
    for (const char* buffer : {"a", "b", "c", "d"}) {
        command
            .add_option_function<std::string>(
                std::string("--buffer-") + buffer,
                [options, buffer](const std::string& path) { options->buffers[buffer] = PathFromUtf8(path); },
                std::string("The mainImage text of buffer ") + buffer)
            ->type_name("FILE");
    }
    command
        .add_option("--channel", options->channels,
                    "What iChannelN of a pass reads: PASS is image or a to d; SOURCE is picture, layer, self, a to d,\n"
                    "keyboard, music or none; may be given several times")
        ->allow_extra_args(false)
        ->type_name("PASS:N=SOURCE");
    command
        .add_option("--expose", options->exposed, "Makes a slider of #define NAME number; may be given several times")
        ->allow_extra_args(false)
        ->type_name("NAME");
    command.callback([&run, options] { run = [options] { return RunNew(*options); }; });
}

}  // namespace

int RunCommandLine(std::vector<std::string> arguments, const std::function<int(const RenderOptions&)>& render) {
    Run run;
    CLI::App app(fmt::format(kAbout, kOwnModuleKind.ending), "quillon");
    app.set_version_flag("--version", "quillon " QUILLON_VERSION);
    app.require_subcommand(0, 1);
    AddRender(app, run, arguments, render);
    AddParams(app, run);
    AddInfo(app, run);
    AddCheck(app, run);
    AddPack(app, run);
    AddChart(app, run);
    AddCompare(app, run);
    AddNew(app, run);
    app.add_subcommand("worker")->group("")->callback([&run] { run = RunWorker; });
    try {
        std::reverse(arguments.begin(), arguments.end());  // as the parser takes them off
        app.parse(std::move(arguments));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {  // help and version
            std::ostringstream text;
            app.exit(error, text, text);
            std::string words = text.str();
            if (words.ends_with('\n')) words.pop_back();
            PrintResult(words);
            return 0;
        }
        const auto commands = app.get_subcommands();
        const std::string command = commands.empty() ? "" : commands.front()->get_name() + " ";
        throw WrongCommandLine("", error.what(), "see quillon " + command + "--help");
    }
    if (!run) throw WrongCommandLine("", "no command", "name one of those that quillon --help lists");
    return run();
}

}  // namespace quillon::cli
