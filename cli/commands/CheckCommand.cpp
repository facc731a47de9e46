#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <set>
#include <vector>

#include "cli/check/run/FindingFormats.h"
#include "cli/commands/Commands.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

namespace {

bool IsTerminal() {
    static const bool kIsTerminal = isatty(STDERR_FILENO) != 0;
    return kIsTerminal;
}

// What is being tried, in the terminal's last line. Words that are printed take its place.
void ShowStep(const std::string& effect, const std::string& step) {
    constexpr std::size_t kWidth = 79;
    if (IsTerminal()) fmt::print(stderr, "\r\x1b[K{}", (effect + ": " + step).substr(0, kWidth));
}

CheckOutcome Check(const CheckOptions& options, const std::filesystem::path& effect) {
    CheckOutcome outcome{effect.string(), {}, {}};
    std::set<std::string> said;  // every scene starts the script anew
    const CheckListener listener = {[&](const std::string& step) { ShowStep(outcome.effect, step); },
                                    [&](const std::string& note) {
                                        if (said.insert(note).second) PrintWordsOverBar(note);
                                    }};
    CheckSettings settings{effect, options.level, {}};
    settings.timeLimit = std::chrono::milliseconds(std::lround(1000 * options.secondsLimit));
    try {
        outcome.checked = CheckEffect(settings, listener);
    } catch (const ToolError& error) {
        outcome.faults = error.faults;
    }
    if (IsTerminal()) fmt::print(stderr, "\r\x1b[K");
    return outcome;
}

std::string Counted(std::size_t count, const char* word) {
    return fmt::format("{} {}{}", count, word, count == 1 ? "" : "s");
}

void PrintOutcome(const CheckOutcome& outcome) {
    const char* const noColor = std::getenv("NO_COLOR");
    const bool hasColors = IsTerminal() && (!noColor || !*noColor);
    for (const Diagnostic& finding : outcome.checked.findings)
        PrintWords(IsTerminal() ? FindingForTerminal(finding, outcome.checked.source, hasColors)
                                : FormatDiagnostic(finding));
    PrintDiagnostics(outcome.faults);
    if (!outcome.faults.empty() || outcome.checked.hasErrors()) return;
    const std::size_t warnings = outcome.checked.findings.size();
    PrintResult(outcome.effect + ": " + (warnings == 0 ? "nothing wrong" : Counted(warnings, "warning")));
}

}  // namespace

int RunCheck(const CheckOptions& options) {
    std::vector<CheckOutcome> outcomes;
    for (const std::filesystem::path& effect : options.effects) {
        outcomes.push_back(Check(options, effect));
        if (options.format == CheckFormat::text)
            PrintOutcome(outcomes.back());
        else
            PrintDiagnostics(outcomes.back().faults);
    }
    if (options.format == CheckFormat::json) PrintResult(FindingsAsJson(outcomes).dump(2));
    if (options.format == CheckFormat::sarif) PrintResult(FindingsAsSarif(outcomes, QUILLON_VERSION).dump(2));
    const bool isClean = std::ranges::all_of(outcomes, [&](const CheckOutcome& outcome) {
        const bool isDenied = options.deniesWarnings && !outcome.checked.findings.empty();
        return outcome.faults.empty() && !outcome.checked.hasErrors() && !isDenied;
    });
    return isClean ? 0 : kFault;
}

}  // namespace quillon::cli
