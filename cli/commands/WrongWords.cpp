#include "cli/commands/WrongWords.h"

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "cli/diagnostics/NearestName.h"

namespace quillon::cli {

namespace {

std::vector<std::string> CommandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command :
         app.get_subcommands([](const CLI::App* known) { return !known->get_group().empty(); }))
        names.push_back(command->get_name());
    return names;
}

std::vector<std::string> OptionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
    return names;
}

}  // namespace

ToolError WrongWords(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<CLI::App*> called = app.get_subcommands();
    const CLI::App& command = called.empty() ? app : *called.front();
    const std::string help = "see quillon " + (called.empty() ? "" : command.get_name() + " ") + "--help";
    const auto unknown = [&](const std::string& word, const char* fault, const std::vector<std::string>& known) {
        const std::string nearest = DidYouMean(word, known);
        return WrongCommandLine(word, fault, nearest.empty() ? help : nearest + " " + help);
    };
    for (const std::string& word : command.remaining()) {
        if (word.starts_with('-') && word != "-")
            return unknown(word.substr(0, word.find('=')), "no such option", OptionNames(command));
        if (called.empty()) return unknown(word, "no such command", CommandNames(app));
    }
    return WrongCommandLine("", error.what(), help);
}

}  // namespace quillon::cli
