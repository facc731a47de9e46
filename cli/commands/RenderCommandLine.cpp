#include <memory>

#include "cli/commands/AddCommands.h"
#include "cli/commands/OptionForms.h"
#include "cli/effect/ControlValues.h"

namespace quillon::cli {

namespace {

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
    command.add_option("--codec-args", options.codecArgs, "Further arguments for ffmpeg, separated by blanks")
        ->type_name("TEXT");
}

}  // namespace

void AddRender(CLI::App& app, std::function<int()>& run, const std::vector<std::string>& arguments,
               const std::function<int(const RenderOptions&)>& render) {
    auto options = std::make_shared<RenderOptions>();
    options->arguments = arguments;
    CLI::App& command = *app.add_subcommand("render", kRenderAbout);
    command.footer(kRenderMore);
    AddPath(command, "EFFECT", options->effect, "The effect's folder, or a packed module")->required()->type_name("");
    AddPath(command, "-i,--input", options->input,
            "The picture that the effect is applied to; default: the test picture of quillon chart")
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
    CLI::Option* time = command.add_option("--time", options->timeSeconds, "The moment to render; default 0")
                            ->check(kIsFinite)
                            ->type_name("SECONDS");
    command.add_option("--frames", options->frames, "A sequence, both ends included")
        ->excludes(time)
        ->type_name("FIRST-LAST[xSTEP]");
    command.add_option("--fps", options->framesPerSecond, "Frames per second; default: those of a movie, else 25")
        ->excludes(time)
        ->check(CLI::Range(0.001, 100000.0))
        ->check(kIsFinite)
        ->type_name("NUMBER");
    AddSize(command, "--size", options->rawWidth, options->rawHeight,
            "Extent of .argb pictures that are read, which need --depth too, or of the test picture");
    AddStorage(command, options->storage);
    AddSequence(command, *options);
    AddStreams(command, *options);
    AddLooks(command, *options);
    AddHost(command, *options);
    command.callback([&run, options, render] { run = [options, render] { return render(*options); }; });
}

}  // namespace quillon::cli
