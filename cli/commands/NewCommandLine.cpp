#include <fmt/format.h>

#include <memory>
#include <string>

#include "cli/commands/AddCommands.h"
#include "cli/commands/EffectTemplates.h"
#include "cli/commands/OptionForms.h"

namespace quillon::cli {

namespace {

constexpr const char* kAboutNew =
    "Makes the folder of a new effect, and prints its path. It starts as a template, which renders at once, or as a\n"
    "shader file: ISF (a JSON header, then GLSL) or a fragment with mainImage. What of a file is carried over in\n"
    "another form is printed as warnings; a file that cannot be carried over is refused, with the lines and the\n"
    "reasons, and leaves no folder.";

std::string MoreOfNew() {
    std::string text = "Templates:\n";
    for (const EffectTemplate& each : EffectTemplates()) text += fmt::format("  {:<12}{}\n", each.name, each.about);
    return text +
           "\n"
           "  quillon new bloom\n"
           "  quillon new soft --template blur\n"
           "  quillon new waves --from waves.glsl --expose SPEED";
}

}  // namespace

void AddNew(CLI::App& app, std::function<int()>& run) {
    auto options = std::make_shared<NewOptions>();
    CLI::App& command = *app.add_subcommand("new", kAboutNew);
    command.footer(MoreOfNew());
    AddPath(command, "NAME", options->folder, "The new folder; its last part is the effect's name")
        ->required()
        ->type_name("");
    CLI::Option* const from =
        AddPath(command, "--from", options->from, "The shader file, or a saved project of mainImage passes")
            ->type_name("FILE");
    command.add_option("--template", options->templateName, "What it starts as, see below; default basic")
        ->excludes(from)
        ->type_name("NAME");
    AddPath(command, "--common", options->common, "Text in front of all mainImage passes")
        ->needs(from)
        ->type_name("FILE");
    for (const char* buffer : {"a", "b", "c", "d"}) {
        command
            .add_option_function<std::string>(
                std::string("--buffer-") + buffer,
                [options, buffer](const std::string& path) { options->buffers[buffer] = PathFromUtf8(path); },
                std::string("The mainImage text of buffer ") + buffer)
            ->needs(from)
            ->type_name("FILE");
    }
    command
        .add_option("--channel", options->channels,
                    "What iChannelN of a pass reads: PASS is image or a to d; SOURCE is picture, layer, self, a to d,\n"
                    "keyboard, music or none; may be given several times")
        ->needs(from)
        ->allow_extra_args(false)
        ->type_name("PASS:N=SOURCE");
    command
        .add_option("--expose", options->exposed, "Makes a slider of #define NAME number; may be given several times")
        ->needs(from)
        ->allow_extra_args(false)
        ->type_name("NAME");
    command.callback([&run, options] { run = [options] { return RunNew(*options); }; });
}

}  // namespace quillon::cli
