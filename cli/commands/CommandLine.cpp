#include "cli/commands/CommandLine.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <functional>
#include <sstream>
#include <utility>

#include "cli/commands/AddCommands.h"
#include "cli/commands/Commands.h"
#include "cli/commands/DescribeCommands.h"
#include "cli/commands/OptionForms.h"
#include "cli/commands/Version.h"
#include "cli/commands/WrongWords.h"
#include "cli/completion/CommandShape.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ToolError.h"
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
    "  quillon new bloom --template blur\n"
    "  quillon chart -o chart.png\n"
    "  quillon render bloom -i chart.png -o out.png\n"
    "  quillon preview bloom\n"
    "  quillon check bloom\n"
    "  quillon pack bloom -o bloom{}\n"
    "\n"
    "quillon docs has the documentation, quillon COMMAND --help the options of a command with examples.\n"
    "\n"
    "Results go to standard output, words to standard error. Exit status: 0 when all went well, 1 when the effect\n"
    "or a file is at fault, 2 for a wrong command line.";

void AddChart(CLI::App& app, Run& run) {
    auto options = std::make_shared<ChartOptions>();
    CLI::App& command = *app.add_subcommand(
        "chart", "Writes a test picture: ramps, patches, fine lines, round shapes, lights and soft transparent parts.");
    AddPath(command, "-o,--output", options->output, "Where it goes: .png, .exr, .tif or .argb (8 bits)")
        ->required()
        ->type_name("FILE");
    AddSize(command, "--size", options->width, options->height, "Its extent in pixels; default 960x540");
    command
        .add_option("--frames", options->frames, "Footage that moves, 48 frames until it repeats; -o may be a movie")
        ->type_name("FIRST-LAST[xSTEP]");
    command.footer(
        "  quillon chart -o chart.png\n"
        "  quillon chart -o chart.exr --size 1920x1080\n"
        "  quillon chart -o chart.####.png --frames 0-47");
    command.callback([&run, options] { run = [options] { return RunChart(*options); }; });
}

void AddParams(CLI::App& app, Run& run) {
    auto options = std::make_shared<ParamsOptions>();
    CLI::App& command = *app.add_subcommand(
        "params", "Lists the effect's controls as its host has them, in the host's order, with every field.");
    AddPath(command, "EFFECT", options->effect, "The effect's folder, or a packed module")->required()->type_name("");
    command.add_flag("--json", options->isJson, "As a JSON array of objects, for programs");
    command.footer(
        "  quillon params effects/glow\n"
        "  quillon params --json effects/glow");
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
    command.footer(
        "  quillon info effects/glow\n"
        "  quillon info --rewritten blur.frag effects/glow");
    command.callback([&run, options] { run = [options] { return RunInfo(*options); }; });
}

void AddPack(CLI::App& app, Run& run) {
    auto options = std::make_shared<PackOptions>();
    CLI::App& command = *app.add_subcommand(
        "pack",
        "Makes the module that a host loads, from an effect's folder, and prints its path. Warns of what looks wrong\n"
        "in config.xml and of files that are hardly a part of the effect. Runs check at level 2 first, and packs "
        "nothing\n"
        "that has an error.");
    AddPath(command, "FOLDER", options->folder, "The effect's folder")->required()->type_name("");
    AddPath(command, "-o,--output", options->output,
            "The module: a name that ends in .so for Linux, in .aex for Windows")
        ->required()
        ->type_name("MODULE");
    command.add_flag("--list", options->isListed, "Prints the size and the name of each file in the module, too");
    command.add_flag("--no-check", options->isUnchecked, "Packs scripts and shaders as they are");
    command
        .add_option_function<std::string>(
            "--for", [options](const std::string&) { options->isForFrei0r = true; },
            "A plug-in for open video tools instead: frei0r, for ffmpeg, melt and Kdenlive. Runs the effect's setup()")
        ->check(CLI::IsMember({"frei0r"}))
        ->type_name("HOSTS");
    command.footer(
        "  quillon pack effects/glow -o glow.aex\n"
        "  quillon pack --list effects/glow -o glow.so\n"
        "  quillon pack effects/glow -o plugins/glow.so --for frei0r");
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
        ->check(kIsFinite)
        ->type_name("N");
    command.add_option("--fail-percent", options->limitPercent, "How many percent of the pixels may fail; default 0")
        ->check(CLI::Range(0.0, 100.0))
        ->check(kIsFinite)
        ->type_name("P");
    AddPath(command, "-o,--output", options->output,
            "Draws the difference: black where equal, the largest at full scale")
        ->type_name("FILE");
    command.add_option("--frames", options->frames, "The frames of patterns")->type_name("FIRST-LAST[xSTEP]");
    AddSize(command, "--size", options->rawWidth, options->rawHeight, "Extent of .argb pictures");
    command.add_option("--depth", options->depth, "Bits per channel of .argb pictures: 8, 16 or 32")
        ->check(CLI::IsMember({8, 16, 32}))
        ->type_name("BITS");
    command.footer(
        "  quillon compare old.png new.png\n"
        "  quillon compare old.####.png new.####.png --frames 0-47 --fail 1 -o difference.png");
    command.callback([&run, options] { run = [options] { return RunCompare(*options); }; });
}

void AddDocs(CLI::App& app, Run& run) {
    auto options = std::make_shared<DocsOptions>();
    CLI::App& command =
        *app.add_subcommand("docs",
                            "Shows the documentation: the list of its pages, a page, or what is said about a "
                            "function or a command.");
    command
        .add_option_function<std::vector<std::string>>(
            "TOPIC",
            [options](const std::vector<std::string>& words) { options->topic = CLI::detail::join(words, " "); },
            "A page, a function as QL_renderShader, an entry point, a command, or the words of a heading")
        ->type_name("");
    command.add_flag("--man", options->isManPage, "As a manual page, for man");
    command.footer(
        "  quillon docs\n"
        "  quillon docs script-api\n"
        "  quillon docs QL_renderShader");
    command.callback([&run, options] { run = [options] { return RunDocs(*options); }; });
}

void AddDoctor(CLI::App& app, Run& run) {
    CLI::App& command = *app.add_subcommand(
        "doctor",
        "Says what the tool finds on this machine: graphics driver, templates, programs; and how to get what is\n"
        "missing. Exit status 1 when effects cannot be rendered or packed.");
    command.callback([&run] { run = RunDoctor; });
}

void AddCompletion(CLI::App& app, Run& run) {
    auto shell = std::make_shared<std::string>();
    CLI::App& command = *app.add_subcommand(
        "completion", "Prints a script that teaches a shell to complete the command line of quillon.");
    command.add_option("SHELL", *shell, "The shell")
        ->required()
        ->check(CLI::IsMember(std::vector<std::string>(std::begin(kShells), std::end(kShells))))
        ->type_name("");
    command.footer(
        "  bash        source <(quillon completion bash)\n"
        "  zsh         quillon completion zsh > \"${fpath[1]}/_quillon\"\n"
        "  fish        quillon completion fish > ~/.config/fish/completions/quillon.fish\n"
        "  powershell  quillon completion powershell | Out-String | Invoke-Expression");
    command.callback([&app, &run, shell] {
        run = [&app, shell] {
            PrintResult(WriteCompletion(*shell, DescribeCommands(app)));
            return 0;
        };
    });
}

}  // namespace

int RunCommandLine(std::vector<std::string> arguments, const std::function<int(const RenderOptions&)>& render) {
    Run run;
    CLI::App app(fmt::format(kAbout, kOwnModuleKind.ending), "quillon");
    app.allow_windows_style_options(false);  // "/clips/in.png" is a path on Windows too
    app.set_version_flag("--version", VersionText, "Prints the version, the commit and the libraries");
    app.require_subcommand(0, 1);
    AddRender(app, run, arguments, render);
    AddPreview(app, run);
    AddParams(app, run);
    AddInfo(app, run);
    AddCheck(app, run);
    AddPack(app, run);
    AddChart(app, run);
    AddCompare(app, run);
    AddNew(app, run);
    AddDocs(app, run);
    AddDoctor(app, run);
    AddCompletion(app, run);
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
        throw WrongWords(app, error);
    }
    if (!run) throw WrongCommandLine("", "no command", "name one of those that quillon --help lists");
    return run();
}

}  // namespace quillon::cli
