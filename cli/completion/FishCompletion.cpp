#include <fmt/format.h>

#include "cli/completion/CommandShape.h"

namespace quillon::cli {

namespace {

std::string ForFish(const std::string& text) {
    std::string escaped;
    for (const char c : text) escaped += c == '\\' ? std::string("\\\\") : std::string(1, c);
    return SingleQuoted(escaped, "\\'");
}

// -x: a value and no files; -r: a value, which may be a file.
std::string Value(const ValueShape& value) {
    if (value.kind == ValueShape::Kind::none) return "";
    if (value.kind == ValueShape::Kind::file) return " -r -F";
    std::string words;
    for (const std::string& choice : value.choices) words += (words.empty() ? "" : " ") + choice;
    return words.empty() ? " -x" : " -x -a " + ForFish(words);
}

}  // namespace

std::string WriteFishCompletion(std::span<const CommandShape> commands) {
    std::string text =
        "# fish completion for quillon: quillon completion fish > ~/.config/fish/completions/quillon.fish\n"
        "complete -c quillon -f -n __fish_use_subcommand -l help -d 'Print help'\n"
        "complete -c quillon -f -n __fish_use_subcommand -l version -d 'Print the version'\n";
    for (const CommandShape& command : commands) {
        text += fmt::format("complete -c quillon -f -n __fish_use_subcommand -a {} -d {}\n", command.name,
                            ForFish(command.about));
        const std::string start = fmt::format("complete -c quillon -n '__fish_seen_subcommand_from {}'", command.name);
        for (const OptionShape& option : command.options) {
            text += start;
            for (const std::string& name : option.names)
                text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
            text += Value(option.value) + " -d " + ForFish(option.about) + "\n";
        }
        if (command.argument.kind == ValueShape::Kind::choice)
            text += start + " -f" + Value(command.argument).substr(3) + "\n";
    }
    text.pop_back();
    return text;
}

}  // namespace quillon::cli
