#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <optional>
#include <set>

#include "cli/check/script/GlobalObject.h"
#include "cli/check/script/ScriptRules.h"
#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

namespace {

// The words of a text: names may come from lists such as "sin|cos".
void AddWords(std::set<std::string_view>& words, std::string_view text) {
    while (!text.empty()) {
        std::size_t length = 0;
        while (length < text.size() && IsWordCharacter(text[length])) ++length;
        if (length > 0) words.insert(text.substr(0, length));
        text.remove_prefix(std::min(length + 1, text.size()));
    }
}

bool MakesTexts(const ScriptTree& tree, NodeIndex node) {
    static const std::set<std::string_view> kMakers = {"charAt",      "concat",      "fromCharCode", "join",
                                                       "replace",     "slice",       "substr",       "substring",
                                                       "toLowerCase", "toUpperCase", "trim"};
    const ScriptNode& here = tree[node];
    if (here.kind == NodeKind::member) return kMakers.contains(here.text);
    return here.kind == NodeKind::binary && here.text == "+" &&
           (tree[tree.inside(here.firstChild)].kind == NodeKind::text ||
            tree[tree.inside(here.lastChild)].kind == NodeKind::text);
}

// All names under which a script may keep one of its functions, and those that it asks for before it counts on them.
// Nothing when it may make names that are not in its text.
std::optional<std::set<std::string_view>> OwnNames(const ScriptFacts& script) {
    const ScriptTree& tree = script.tree;
    std::set<std::string_view> names;
    bool setsComputed = false, makesTexts = false;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        const ScriptNode& here = tree[node];
        const ScriptNode& above = tree.parentOf(node);
        const bool isCalled = above.kind == NodeKind::call && above.firstChild == node;
        if (here.kind == NodeKind::property || here.kind == NodeKind::binding) names.insert(here.text);
        if (here.kind == NodeKind::identifier && here.isWritten) names.insert(here.text);
        if (here.kind == NodeKind::text) AddWords(names, here.text);
        // Read without a call, it may be looked at first.
        const bool isBase =
            (above.kind == NodeKind::member || above.kind == NodeKind::index) && above.firstChild == node;
        if (here.kind == NodeKind::member && !isCalled && !isBase) names.insert(here.text);
        if (here.kind == NodeKind::index && here.isWritten &&
            tree[tree.inside(here.lastChild)].kind != NodeKind::literal)
            setsComputed = true;
        makesTexts = makesTexts || MakesTexts(tree, node);
    }
    if (setsComputed && makesTexts) return {};
    return names;
}

// A name that only other hosts have, such as console where the script asks for it first: what comes from it may have
// any method. The result of console.log(...) is nothing.
bool IsForeign(const ScriptFacts& script, NodeIndex node) {
    const ScriptNode& here = script.tree[node];
    const ScriptNode& above = script.tree.parentOf(node);
    if (here.kind == NodeKind::member) return here.text == "console";
    const bool isUnknown = here.kind == NodeKind::identifier && script.scopes.variableOf(node) == ScriptScopes::kNone &&
                           !script.engine.globals().contains(here.text) && here.text != "arguments";
    if (!isUnknown || above.kind == NodeKind::typeOf) return false;
    const bool isLogging = (here.text == "console" || here.text == "print") && above.firstChild == node &&
                           (above.kind == NodeKind::member || above.kind == NodeKind::call);
    return !isLogging;
}

bool HasForeignObjects(const ScriptFacts& script) {
    for (NodeIndex node = script.tree.after(0); node != 0; node = script.tree.after(node))
        if (IsForeign(script, node)) return true;
    return false;
}

}  // namespace

// A call of a function that no object can have, whatever its base is at run time: it always raises an error.
void FindUnknownMethods(const ScriptFacts& script, ScriptFindings& findings) {
    const ScriptTree& tree = script.tree;
    constexpr std::size_t kMostSearches = 300;  // so that hostile texts take no minutes
    std::map<std::string_view, std::string> remedies;
    const auto own = OwnNames(script);
    const bool hasForeign = HasForeignObjects(script);
    if (!own || !NamesGivenToGlobalObject(script)) return;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        const NodeIndex callee = tree[node].kind == NodeKind::call ? tree[node].firstChild : 0;
        if (callee == 0 || tree[callee].kind != NodeKind::member || own->contains(tree[callee].text)) continue;
        if (script.scopes.isInAttempt(node) || script.scopes.isInWith(node)) continue;
        const NodeIndex base = tree.inside(tree[callee].firstChild);
        const bool isEngines =
            tree[base].kind == NodeKind::identifier && script.scopes.variableOf(base) == ScriptScopes::kNone;
        const auto table = isEngines ? script.engine.objects().find(tree[base].text) : script.engine.objects().end();
        if (hasForeign && !isEngines) continue;
        // A base that is not there at all has its own finding.
        if (isEngines && table == script.engine.objects().end()) continue;
        const auto& known = isEngines ? table->second : script.engine.members();
        if (known.contains(tree[callee].text) || script.engine.globals().contains(tree[callee].text)) continue;
        std::string& remedy = remedies[tree[callee].text];
        if (remedy.empty() && remedies.size() < kMostSearches) {
            std::vector<std::string> candidates(known.begin(), known.end());
            candidates.insert(candidates.end(), own->begin(), own->end());
            remedy = DidYouMean(tree[callee].text, candidates);
        }
        if (remedy.empty()) remedy = "it is newer than ECMAScript 5, or its name is mistyped";
        const std::string text = isEngines ? fmt::format("{} has no function {}", tree[base].text, tree[callee].text)
                                           : fmt::format("no object has a function {}", tree[callee].text);
        findings.push_back({"script/unknown-member", tree[callee].place, text, remedy});
    }
}

}  // namespace quillon::cli
