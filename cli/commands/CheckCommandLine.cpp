#include <memory>

#include "cli/commands/AddCommands.h"
#include "cli/commands/OptionForms.h"

namespace quillon::cli {

namespace {

constexpr const char* kAboutCheck =
    "Reports what is wrong with effects, with file and line: all that would otherwise come up at an artist's desk.\n"
    "The effects run in processes beside the tool, so that one that crashes or never ends is reported too.";

constexpr const char* kMoreOfCheck =
    "Levels, each with the ones before it:\n"
    "  1  files, names and config.xml\n"
    "  2  script and shaders as texts, setup(), every shader compiled\n"
    "  3  frames at 8, 16 and 32 bits with the controls at their defaults\n"
    "  4  every control at its ends, odd sizes, layers, both routes and hosts, downsampling, two instances\n"
    "  5  the order of frames, a long run, NaN in the input, threads, memory\n"
    "\n"
    "A comment \"// quillon-ignore RULE\" in fx.js or a shader silences a warning in its line and the next one; that "
    "of\n"
    "a warning without a line may be anywhere in fx.js. docs/check.md lists the rules.\n"
    "\n"
    "  quillon check effects/glow\n"
    "  quillon check --level 5 --deny-warnings effects/*\n"
    "  quillon check --format sarif effects/glow > findings.sarif";

}  // namespace

void AddCheck(CLI::App& app, std::function<int()>& run) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *app.add_subcommand("check", kAboutCheck);
    command.footer(kMoreOfCheck);
    command
        .add_option_function<std::vector<std::string>>(
            "EFFECT",
            [options](const std::vector<std::string>& texts) {
                for (const std::string& text : texts) options->effects.push_back(PathFromUtf8(text));
            },
            "Folders of effects, or packed modules")
        ->required()
        ->type_name("");
    command.add_option("--level", options->level, "How hard to look; default 3")
        ->check(CLI::Range(1, 5))
        ->type_name("1-5");
    AddChoice<CheckFormat>(command, "--format",
                           {{"text", CheckFormat::text}, {"json", CheckFormat::json}, {"sarif", CheckFormat::sarif}},
                           "text|json|sarif", options->format,
                           "Lines for people and editors (the default), or a document for programs on standard output");
    command.add_flag("--deny-warnings", options->deniesWarnings, "Exit status 1 for warnings too");
    command
        .add_option("--time-limit", options->secondsLimit,
                    "What setup(), preRender(), draw() and updateUIFlags() may take each; default 10")
        ->check(CLI::Range(0.1, 3600.0))
        ->check(kIsFinite)
        ->type_name("SECONDS");
    command.callback([&run, options] { run = [options] { return RunCheck(*options); }; });
}

}  // namespace quillon::cli
