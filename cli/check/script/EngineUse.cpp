// How a script uses the functions and constants of the API.

#include <fmt/format.h>

#include <algorithm>
#include <iterator>

#include "cli/check/script/ScriptRules.h"
#include "cli/diagnostics/NearestName.h"
#include "script/Natives.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kAsking[] = {"||", "&&", "==", "!=", "===", "!=="};

// Whether a table has only its own members: the script neither adds to it nor hands it out.
bool IsOnlyRead(const ScriptFacts& script, std::string_view table) {
    const ScriptTree& tree = script.tree;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        if (!script.isEngineName(node, table)) continue;
        const ScriptNode& above = tree.parentOf(node);
        const bool isBase =
            (above.kind == NodeKind::member || above.kind == NodeKind::index) && above.firstChild == node;
        if (!isBase || above.isWritten) return false;
    }
    return true;
}

// A member that the script asks for before it counts on it.
bool IsAskedFor(const ScriptTree& tree, NodeIndex member) {
    const ScriptNode& above = tree.parentOf(member);
    switch (above.kind) {
        case NodeKind::typeOf:
            return true;
        case NodeKind::ifElse:
        case NodeKind::conditional:
            return above.firstChild == member;
        case NodeKind::unary:
            return above.text == "!";
        case NodeKind::binary:
            return std::ranges::find(kAsking, above.text) != std::end(kAsking);
        default:
            return false;
    }
}

std::string CountOfArguments(int least, int most) {
    const char* const noun = most == 1 ? "argument" : "arguments";
    if (least == most) return most == 0 ? "no arguments" : fmt::format("{} {}", most, noun);
    return fmt::format("{} {} {} {}", least, most == least + 1 ? "or" : "to", most, noun);
}

}  // namespace

void FindUnknownMembers(const ScriptFacts& script, ScriptFindings& findings) {
    const ScriptTree& tree = script.tree;
    for (const auto& [table, members] : script.engine.tables()) {
        if (!IsOnlyRead(script, table)) continue;
        for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
            const ScriptNode& here = tree[node];
            if (here.kind != NodeKind::member && here.kind != NodeKind::index) continue;
            if (!script.isEngineName(tree.inside(here.firstChild), table)) continue;
            const ScriptNode& key = here.kind == NodeKind::member ? here : tree[tree.inside(here.lastChild)];
            if (here.kind == NodeKind::index && key.kind != NodeKind::text) continue;
            if (members.contains(key.text) || script.engine.objectMembers().contains(key.text) ||
                IsAskedFor(tree, node))
                continue;
            const std::vector<std::string> known(members.begin(), members.end());
            findings.push_back({"script/unknown-member", key.place, fmt::format("{} has no {}", table, key.text),
                                DidYouMean(key.text, known)});
        }
    }
}

void FindWrongArgumentCounts(const ScriptFacts& script, ScriptFindings& findings) {
    const ScriptTree& tree = script.tree;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        if (tree[node].kind != NodeKind::call) continue;
        const NodeIndex callee = tree.inside(tree[node].firstChild);
        const Native* const native = script.engine.findFunction(tree[callee].text);
        if (!native || !script.isEngineName(callee, native->name)) continue;
        int count = 0;
        bool isSpread = false;
        for (NodeIndex argument = tree[tree[node].firstChild].nextSibling; argument != 0;
             argument = tree[argument].nextSibling) {
            isSpread = isSpread || tree[argument].kind == NodeKind::spread;
            ++count;
        }
        if (isSpread || (count >= native->leastArguments && count <= native->mostArguments)) continue;
        findings.push_back({"script/wrong-argument-count", tree[callee].begin,
                            fmt::format("{} takes {}, and this call gives {}", native->name,
                                        CountOfArguments(native->leastArguments, native->mostArguments), count)});
    }
}

void FindShadowedFunctions(const ScriptFacts& script, ScriptFindings& findings) {
    for (NodeIndex node = script.tree.after(0); node != 0; node = script.tree.after(node)) {
        const ScriptNode& here = script.tree[node];
        if (here.kind != NodeKind::binding || !script.engine.findFunction(here.text)) continue;
        const NodeKind holder = script.tree.parentOf(node).kind;
        const char* const noun = holder == NodeKind::function    ? "function"
                                 : holder == NodeKind::parameter ? "parameter"
                                                                 : "variable";
        findings.push_back({"script/shadowed-function", here.begin,
                            fmt::format("this {} hides the function {} of the script API", noun, here.text)});
    }
}

}  // namespace quillon::cli
