#include "cli/commands/DescribeCommands.h"

#include <algorithm>

#include "cli/commands/EffectTemplates.h"
#include "cli/docs/DocTopics.h"

namespace quillon::cli {

namespace {

std::string FirstLine(const std::string& text) {
    return text.substr(0, text.find('\n'));
}

std::vector<std::string> Split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        parts.push_back(text.substr(start, end - start));
        start = end + 1;
    }
    return parts;
}

// Names that the tool knows and the parser does not.
struct OwnNames {
    const char* command;
    const char* option;  // "" for what is given without one
    std::vector<std::string> (*names)();
};
constexpr OwnNames kOwnNames[] = {{"new", "--template", TemplateNames}, {"docs", "TOPIC", DocNames}};

// What the parser says a value is: "FILE", "text|json", "BITS:{8,16,32}"; empty for what EFFECT and the like are.
ValueShape ShapeOf(const CLI::App& command, const CLI::Option& option) {
    using Kind = ValueShape::Kind;
    if (option.get_items_expected_max() == 0) return {};
    const std::string type = option.get_type_name();
    const std::string name = option.get_name();
    for (const OwnNames& own : kOwnNames)
        if (command.get_name() == own.command && name == own.option) return {Kind::choice, own.names()};
    if (const std::size_t start = type.find('{'); start != std::string::npos)
        return {Kind::choice, Split(type.substr(start + 1, type.find('}') - start - 1), ',')};
    if (type.find('|') != std::string::npos) return {Kind::choice, Split(type, '|')};
    const bool isFile = type.empty() || type == "FILE" || type == "MODULE";
    return {isFile ? Kind::file : Kind::text};
}

}  // namespace

std::vector<CommandShape> DescribeCommands(const CLI::App& app) {
    std::vector<CommandShape> commands;
    for (const CLI::App* command :
         app.get_subcommands([](const CLI::App* known) { return !known->get_group().empty(); })) {
        CommandShape& shape =
            commands.emplace_back(CommandShape{command->get_name(), FirstLine(command->get_description()), {}, {}});
        for (const CLI::Option* option : command->get_options()) {
            if (option->get_group().empty()) continue;
            const ValueShape value = ShapeOf(*command, *option);
            if (option->get_positional()) {
                shape.argument = value;
                continue;
            }
            OptionShape& row = shape.options.emplace_back(OptionShape{{}, FirstLine(option->get_description()), value});
            for (const std::string& name : option->get_snames()) row.names.push_back("-" + name);
            for (const std::string& name : option->get_lnames()) row.names.push_back("--" + name);
        }
    }
    return commands;
}

}  // namespace quillon::cli
