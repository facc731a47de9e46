#include <fmt/format.h>

#include "cli/completion/CommandShape.h"

namespace quillon::cli {

namespace {

constexpr const char* kBashStart =
    "# bash completion for quillon: source <(quillon completion bash)\n"
    "_quillon() {\n"
    "    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} options= arguments=\n"
    "    local before=${COMP_WORDS[COMP_CWORD-1]}\n"
    "    local IFS=$'\\n'\n"
    "    COMPREPLY=()\n"
    "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n";

constexpr const char* kBashEnd =
    "    esac\n"
    "    if [[ $word == -* ]]; then\n"
    "        COMPREPLY=($(compgen -W \"$options\" -- \"$word\"))\n"
    "    elif [ -n \"$arguments\" ]; then\n"
    "        COMPREPLY=($(compgen -W \"$arguments\" -- \"$word\"))\n"
    "    else\n"
    "        compopt -o filenames 2>/dev/null\n"
    "        COMPREPLY=($(compgen -f -- \"$word\"))\n"
    "    fi\n"
    "}\n"
    "complete -F _quillon quillon";

// The words that compgen takes, separated by line feeds.
std::string WordList(const std::vector<std::string>& words) {
    std::string list;
    for (const std::string& word : words) list += (list.empty() ? "" : "\\n") + word;
    return "$'" + list + "'";
}

// What follows an option; an empty list completes nothing.
std::string CaseOf(const CommandShape& command, const OptionShape& option) {
    std::string patterns;
    for (const std::string& name : option.names)
        patterns += fmt::format("{}'{} {}'", patterns.empty() ? "" : "|", command.name, name);
    std::string reply;
    if (option.value.kind == ValueShape::Kind::choice)
        reply = fmt::format("COMPREPLY=($(compgen -W {} -- \"$word\")); ", WordList(option.value.choices));
    if (option.value.kind == ValueShape::Kind::file)
        reply = "compopt -o filenames 2>/dev/null; COMPREPLY=($(compgen -f -- \"$word\")); ";
    return fmt::format("        {}) {}return ;;\n", patterns, reply);
}

}  // namespace

std::string WriteBashCompletion(std::span<const CommandShape> commands) {
    std::vector<std::string> names = {"--help", "--version"};
    std::string values, words;
    for (const CommandShape& command : commands) {
        names.push_back(command.name);
        std::vector<std::string> options;
        for (const OptionShape& option : command.options) {
            options.insert(options.end(), option.names.begin(), option.names.end());
            if (option.value.kind != ValueShape::Kind::none) values += CaseOf(command, option);
        }
        const bool isChoice = command.argument.kind == ValueShape::Kind::choice;
        words += fmt::format("        {}) options={}{} ;;\n", command.name, WordList(options),
                             isChoice ? " arguments=" + WordList(command.argument.choices) : "");
    }
    return kBashStart +
           fmt::format("        COMPREPLY=($(compgen -W {} -- \"$word\"))\n        return\n    fi\n", WordList(names)) +
           "    case \"$command $before\" in\n" + values + "    esac\n    case $command in\n" + words + kBashEnd;
}

}  // namespace quillon::cli
