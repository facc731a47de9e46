#include "cli/check/script/CheckScript.h"

#include <algorithm>

#include "cli/check/script/AuthorText.h"
#include "cli/check/script/ScriptRules.h"
#include "cli/diagnostics/Rules.h"

namespace quillon::cli {

namespace {

constexpr void (*kScriptRules[])(const ScriptFacts&, ScriptFindings&) = {
    FindUndeclaredNames,   FindUnknownMembers,   FindUnknownMethods, FindWrongArgumentCounts, FindEntryPointCapitals,
    FindShadowedFunctions, FindUnguardedConsole, FindChanceInDraw,   FindMissingEntryPoints,  FindImplicitGlobals,
};

ScriptFindings FindNewerForms(const ScriptTree& tree) {
    ScriptFindings findings;
    for (const NewerForm& form : tree.newerForms) {
        const NewerFormWords words = WordsFor(form.what);
        findings.push_back({"script/not-es5", form.place, words.text, words.remedy});
    }
    return findings;
}

}  // namespace

Diagnostics CheckScriptText(const std::string& path, std::string_view text) {
    const AuthorText author(text);
    const ScriptTree tree = ParseScript(author.prepared());
    ScriptFindings findings = FindNewerForms(tree);
    if (tree.isWhole) {
        const ScriptScopes scopes(tree);
        for (const auto rule : kScriptRules) rule({tree, scopes, EngineNames::Instance()}, findings);
    }
    std::ranges::stable_sort(findings, {}, &ScriptFinding::place);

    std::vector<std::size_t> offsets;
    for (const ScriptFinding& finding : findings) offsets.push_back(finding.place);
    const std::vector<AuthorPlace> places = author.authorPlaces(offsets);
    Diagnostics diagnostics;
    for (std::size_t i = 0; i < findings.size(); ++i) {
        const bool isPlaced = findings[i].place != ScriptFinding::kNoPlace;
        diagnostics.push_back(Found(findings[i].rule, path, isPlaced ? places[i].line : 0,
                                    isPlaced ? places[i].column : 0, std::move(findings[i].text),
                                    std::move(findings[i].remedy)));
    }
    return diagnostics;
}

std::optional<ScriptBreak> WhereScriptBreaks(std::string_view text) {
    const AuthorText author(text);
    const ScriptTree tree = ParseScript(author.prepared());
    if (tree.isWhole) return {};
    const AuthorPlace place = author.authorPlaces({tree.brokenAt}).front();
    return ScriptBreak{place.line, place.column, std::string(tree.brokenToken)};
}

std::vector<ScriptFunction> FunctionsOfScript(std::string_view text) {
    const AuthorText author(text);
    const ScriptTree tree = ParseScript(author.prepared());
    std::vector<ScriptFunction> functions;
    std::vector<std::size_t> begins;
    std::vector<std::pair<std::size_t, std::size_t>> ends;  // places, each with its function
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        if (tree[node].kind != NodeKind::function) continue;
        ends.emplace_back(tree[node].end, functions.size());
        begins.push_back(tree[node].begin);
        functions.push_back({std::string(tree.nameOfFunction(node)), 0, 0});
    }
    std::ranges::sort(ends);
    const std::vector<AuthorPlace> first = author.authorPlaces(begins);
    std::vector<std::size_t> endOffsets;
    endOffsets.reserve(ends.size());
    for (const auto& [place, function] : ends) endOffsets.push_back(place);
    const std::vector<AuthorPlace> last = author.authorPlaces(endOffsets);
    for (std::size_t i = 0; i < functions.size(); ++i) {
        functions[i].firstLine = first[i].line;
        functions[ends[i].second].lastLine = last[i].line;
    }
    return functions;
}

}  // namespace quillon::cli
