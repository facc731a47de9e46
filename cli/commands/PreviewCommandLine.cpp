#include <memory>
#include <string>

#include "cli/commands/AddCommands.h"
#include "cli/commands/OptionForms.h"
#include "cli/preview/Preview.h"

namespace quillon::cli {

namespace {

constexpr const char* kAboutPreview =
    "Shows an effect in the browser while it is written: the picture, its controls, time, and what is wrong, with\n"
    "file and line. Saving a file of the effect updates the page. Prints the page's address and runs until Ctrl-C.";

constexpr const char* kMore =
    "The picture has the bytes that quillon render gives; the page copies the command line that renders it.\n"
    "\n"
    "The page is served on this machine only, at an address that nobody guesses. From another machine it is seen\n"
    "through ssh -L PORT:127.0.0.1:PORT, with --port PORT.\n"
    "\n"
    "  quillon preview effects/glow\n"
    "  quillon preview effects/lens -i shot.####.exr --frames 1-100 --fps 24 --set k1=0.3";

void ReadRange(PreviewSetup& setup, const std::string& text) {
    if (const auto range = ParseFrameRange(text)) {
        setup.range = *range;
        setup.hasRange = true;
    }
}

}  // namespace

void AddPreview(CLI::App& app, std::function<int()>& run) {
    auto options = std::make_shared<PreviewOptions>();
    PreviewSetup& setup = options->setup;
    CLI::App& command = *app.add_subcommand("preview", kAboutPreview);
    command.footer(kMore);
    AddPath(command, "EFFECT", setup.effect, "The effect's folder, or a packed module")->required()->type_name("");
    AddPath(command, "-i,--input", setup.input,
            "The picture that the effect is applied to, a pattern for --frames, or a movie; default: a test picture")
        ->type_name("FILE");
    command.add_option("--layer", setup.layers, "A picture for a layer control; may be given several times")
        ->allow_extra_args(false)
        ->type_name("NAME=FILE");
    command.add_option("--set", setup.values, "A control, to begin with; may be given several times")
        ->allow_extra_args(false)
        ->type_name("NAME=VALUE");
    command.add_option("--depth", setup.depth, "Bits per channel, to begin with: 8, 16 or 32; default: the input's")
        ->check(CLI::IsMember({8, 16, 32}))
        ->type_name("BITS");
    command
        .add_option_function<std::string>(
            "--frames", [&setup](const std::string& text) { ReadRange(setup, text); },
            "The frames of the timeline, both ends included; default: a movie's own, else 0-99")
        ->type_name("FIRST-LAST");
    command.add_option("--fps", setup.framesPerSecond, "Frames per second; default: those of a movie, else 25")
        ->check(CLI::Range(0.001, 100000.0))
        ->check(kIsFinite)
        ->type_name("NUMBER");
    AddChoice<host::HostKind>(
        command, "--host", {{"after-effects", host::HostKind::afterEffects}, {"premiere", host::HostKind::premiere}},
        "HOST", setup.host, "The host that is played, to begin with: after-effects or premiere; default after-effects");
    command
        .add_option("--downsample", setup.downsample, "Renders at 1/N of the size, to begin with: 1 to 64; default 1")
        ->check(CLI::Range(1, 64))
        ->type_name("N");
    command.add_option("--port", options->port, "Where the page is served, 1 to 65535; default: any that is free")
        ->check(CLI::Range(1, 65535))
        ->type_name("N");
    command.add_flag_callback(
        "--no-browser", [options] { options->opensBrowser = false; }, "Opens no browser, and only prints the address");
    command
        .add_option("--time-limit", options->timeLimitSeconds,
                    "How long the effect may take for a frame, or for its setup, before it is ended; default 10")
        ->check(CLI::Range(0.1, 86400.0))
        ->check(kIsFinite)
        ->type_name("SECONDS");
    command.callback([&run, options] { run = [options] { return RunPreview(*options); }; });
}

}  // namespace quillon::cli
