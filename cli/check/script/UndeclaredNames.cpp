#include <fmt/format.h>

#include <set>
#include <unordered_map>

#include "cli/check/script/GlobalObject.h"
#include "cli/check/script/ScriptRules.h"
#include "cli/diagnostics/NearestName.h"

namespace quillon::cli {

namespace {

// "did you mean x?" for a name that is used at a node, or nothing. The search ends after so many comparisons, so that a
// text of nothing but unknown names does not take minutes. A name is searched for once, at its first use.
class Suggestions {
public:
    explicit Suggestions(const ScriptFacts& facts) : script(facts) {}

    std::string find(NodeIndex node) {
        // QL.getTime, for Q.L.getTime or QL_getTime
        const ScriptNode& above = script.tree.parentOf(node);
        const std::string joined = "QL_" + std::string(above.text);
        if (above.kind == NodeKind::member && script.engine.findFunction(joined)) return "did you mean " + joined + "?";
        const auto [entry, isNew] = found.try_emplace(script.tree[node].text);
        if (isNew && compared < kMostComparisons) entry->second = search(node);
        return entry->second;
    }

private:
    static constexpr std::size_t kMostComparisons = 1'000'000;

    std::string search(NodeIndex node) {
        const std::string ofTheApi = "QL_" + std::string(script.tree[node].text);
        if (script.engine.findFunction(ofTheApi)) return "did you mean " + ofTheApi + "?";
        std::vector<std::string> known = script.scopes.namesAt(node);
        known.insert(known.end(), script.engine.globals().begin(), script.engine.globals().end());
        compared += known.size();
        return DidYouMean(script.tree[node].text, known);
    }

    const ScriptFacts& script;
    std::unordered_map<std::string_view, std::string> found;
    std::size_t compared = 0;
};

// Names that the author asks for with typeof, here or there, may be missing.
std::set<std::string_view> NamesAskedFor(const ScriptTree& tree) {
    std::set<std::string_view> names;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        if (tree[node].kind != NodeKind::typeOf) continue;
        const ScriptNode& operand = tree[tree.inside(tree[node].firstChild)];
        if (operand.kind == NodeKind::identifier) names.insert(operand.text);
    }
    return names;
}

}  // namespace

void FindUndeclaredNames(const ScriptFacts& script, ScriptFindings& findings) {
    const auto given = NamesGivenToGlobalObject(script);
    if (!given) return;
    const std::set<std::string_view> asked = NamesAskedFor(script.tree);
    Suggestions suggestions(script);
    for (NodeIndex node = script.tree.after(0); node != 0; node = script.tree.after(node)) {
        const std::string_view name = script.tree[node].text;
        if (script.tree[node].kind != NodeKind::identifier || script.scopes.variableOf(node) != ScriptScopes::kNone)
            continue;
        const bool isKnown = script.engine.globals().contains(name) || given->contains(name) || asked.contains(name) ||
                             (name == "arguments" && script.scopes.isInFunction(node));
        // These have their own rule.
        const bool isOfTheTool = name == "console" || name == "print";
        // `delete x` removes a name if it is there.
        const ScriptNode& above = script.tree.parentOf(node);
        const bool isRemoved = above.kind == NodeKind::unary && above.text == "delete";
        if (isKnown || isOfTheTool || isRemoved || script.scopes.isInWith(node) || script.scopes.isInAttempt(node))
            continue;
        findings.push_back({"script/undeclared-name", script.tree[node].begin, fmt::format("nothing declares {}", name),
                            suggestions.find(node)});
    }
}

}  // namespace quillon::cli
