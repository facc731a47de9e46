#include <fmt/format.h>

#include <set>
#include <vector>

#include "cli/check/script/ScriptRules.h"

namespace quillon::cli {

namespace {

// What is different at each run; empty for anything else.
std::string_view ChanceAt(const ScriptFacts& script, NodeIndex node) {
    const ScriptTree& tree = script.tree;
    const ScriptNode& here = tree[node];
    const NodeIndex object = tree.inside(here.firstChild);
    const auto isMember = [&](std::string_view name, std::string_view member) {
        return here.kind == NodeKind::member && here.text == member && !here.isWritten &&
               script.isEngineName(object, name);
    };
    if (isMember("Math", "random")) return "Math.random";
    if (isMember("Date", "now")) return "Date.now";
    if (isMember("performance", "now")) return "performance.now";
    const bool isDate = script.isEngineName(object, "Date");
    // With arguments it is the date that they say; called without new it ignores them.
    if (here.kind == NodeKind::create && isDate && here.firstChild == here.lastChild) return "new Date()";
    return here.kind == NodeKind::call && isDate && tree[here.firstChild].kind != NodeKind::member ? "Date()" : "";
}

bool ReplacesRandom(const ScriptTree& tree) {
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node))
        if (tree[node].kind == NodeKind::member && tree[node].text == "random" && tree[node].isWritten) return true;
    return false;
}

// The functions that an entry point is, or names, or that those name, each with the entry point.
class Reached {
public:
    Reached(const ScriptFacts& facts, std::string_view entryPoint) : script(facts) {
        add(script.scopes.global(entryPoint));
    }

    template <class Visit>
    void forEachNode(Visit visit) {
        for (std::size_t i = 0; i < functions.size(); ++i) {  // grows on the way
            const NodeIndex function = functions[i];
            const std::uint32_t end = script.tree[function].end;
            for (NodeIndex node = script.tree.after(function); node != 0 && script.tree[node].begin < end;
                 node = script.tree.after(node)) {
                if (script.tree[node].kind == NodeKind::function) reached.insert(node);
                visit(node, function);
                if (script.tree[node].kind == NodeKind::identifier) add(script.scopes.variableOf(node));
            }
        }
    }

private:
    void add(VariableIndex variable) {
        if (variable == ScriptScopes::kNone) return;
        for (const NodeIndex function : script.scopes.variables()[variable].functions)
            if (reached.insert(function).second) functions.push_back(function);
    }

    const ScriptFacts& script;
    std::set<NodeIndex> reached;
    std::vector<NodeIndex> functions;
};

}  // namespace

void FindChanceInDraw(const ScriptFacts& script, ScriptFindings& findings) {
    const bool replacesRandom = ReplacesRandom(script.tree);
    std::set<NodeIndex> found;  // also from the entry point before
    for (const std::string_view entry : {"draw", "preRender"}) {
        Reached(script, entry).forEachNode([&](NodeIndex node, NodeIndex function) {
            const std::string_view chance = ChanceAt(script, node);
            if (chance.empty() || (chance == "Math.random" && replacesRandom) || !found.insert(node).second) return;
            const std::string_view name = script.tree.nameOfFunction(function);
            const std::string place =
                name == entry ? fmt::format("{}()", entry) : fmt::format("{}(), which {}() uses,", name, entry);
            findings.push_back({"script/chance-in-draw", script.tree[node].begin,
                                fmt::format("{} in {} makes previews and renders differ", chance, place)});
        });
    }
}

}  // namespace quillon::cli
