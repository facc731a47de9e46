#include <fmt/format.h>

#include "cli/completion/CommandShape.h"

namespace quillon::cli {

namespace {

// A text within what _arguments takes, where brackets and colons have a meaning.
std::string Escaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        if (c == '[' || c == ']' || c == ':' || c == '\\') escaped += '\\';
        escaped += c;
    }
    return escaped;
}

std::string Action(const ValueShape& value) {
    if (value.kind == ValueShape::Kind::file) return "_files";
    if (value.kind != ValueShape::Kind::choice) return " ";
    std::string words;
    for (const std::string& choice : value.choices) words += (words.empty() ? "" : " ") + Escaped(choice);
    return "(" + words + ")";
}

std::string FormOfOption(const std::string& name, const OptionShape& option) {
    std::string text = fmt::format("*{}[{}]", name, Escaped(option.about));
    if (option.value.kind != ValueShape::Kind::none) text += ":value:" + Action(option.value);
    return SingleQuoted(text, "'\\''");
}

}  // namespace

std::string WriteZshCompletion(std::span<const CommandShape> commands) {
    std::string list, cases;
    for (const CommandShape& command : commands) {
        list += fmt::format("        {}\n", SingleQuoted(command.name + ":" + command.about, "'\\''"));
        cases += fmt::format("        {}) _arguments", command.name);
        for (const OptionShape& option : command.options)
            for (const std::string& name : option.names)
                cases += fmt::format(" \\\n            {}", FormOfOption(name, option));
        if (command.argument.kind != ValueShape::Kind::none)
            cases +=
                fmt::format(" \\\n            {}", SingleQuoted("*:argument:" + Action(command.argument), "'\\''"));
        cases += " ;;\n";
    }
    return "#compdef quillon\n"
           "# zsh completion for quillon: save it as _quillon in a folder of $fpath\n"
           "_quillon() {\n"
           "    local -a commands\n"
           "    commands=(\n" +
           list +
           "    )\n"
           "    if (( CURRENT == 2 )); then\n"
           "        _describe command commands\n"
           "        return\n"
           "    fi\n"
           "    shift words\n"
           "    (( CURRENT-- ))\n"
           "    case $words[1] in\n" +
           cases +
           "    esac\n"
           "}\n"
           "if [ \"$funcstack[1]\" = _quillon ]; then _quillon \"$@\"; else compdef _quillon quillon; fi";
}

}  // namespace quillon::cli
