#include <fmt/format.h>

#include "cli/completion/CommandShape.h"

namespace quillon::cli {

namespace {

std::string ForPowerShell(const std::vector<std::string>& words) {
    std::string list;
    for (const std::string& word : words) list += (list.empty() ? "" : ", ") + SingleQuoted(word, "''");
    return "@(" + list + ")";
}

}  // namespace

std::string WritePowerShellCompletion(std::span<const CommandShape> commands) {
    std::string tables, values;
    std::vector<std::string> names;
    for (const CommandShape& command : commands) {
        names.push_back(command.name);
        std::vector<std::string> words;
        for (const OptionShape& option : command.options) {
            for (const std::string& name : option.names) {
                words.push_back(name);
                if (option.value.kind == ValueShape::Kind::choice)
                    values +=
                        fmt::format("        '{} {}' = {}\n", command.name, name, ForPowerShell(option.value.choices));
            }
        }
        words.insert(words.end(), command.argument.choices.begin(), command.argument.choices.end());
        tables += fmt::format("        '{}' = {}\n", command.name, ForPowerShell(words));
    }
    // Where nothing is offered PowerShell completes files by itself.
    return "# PowerShell completion for quillon: quillon completion powershell | Out-String | Invoke-Expression\n"
           "Register-ArgumentCompleter -Native -CommandName quillon -ScriptBlock {\n"
           "    param($word, $ast, $position)\n"
           "    $words = @{\n" +
           tables +
           "    }\n"
           "    $values = @{\n" +
           values +
           "    }\n"
           "    $given = @($ast.CommandElements | ForEach-Object { $_.ToString() })\n"
           "    if ($word -ne '') { $given = @($given | Select-Object -SkipLast 1) }\n"
           "    if ($given.Count -le 1) { $offer = " +
           ForPowerShell(names) +
           " }\n"
           "    else {\n"
           "        $offer = $values[\"$($given[1]) $($given[-1])\"]\n"
           "        if (-not $offer) { $offer = $words[$given[1]] }\n"
           "    }\n"
           "    $offer | Where-Object { $_ -like \"$word*\" } | ForEach-Object {\n"
           "        [System.Management.Automation.CompletionResult]::new($_, $_, 'ParameterValue', $_)\n"
           "    }\n"
           "}";
}

}  // namespace quillon::cli
