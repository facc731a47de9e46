#include <fmt/format.h>

#include <string_view>
#include <vector>

#include "cli/check/script/ScriptRules.h"

namespace quillon::cli {

namespace {

// Whether the places of a script are reached only where a name exists, because a condition around them or an early
// return in front of them asks for it.
class Guards {
public:
    Guards(const ScriptFacts& facts, std::string_view name)
        : script(facts),
          tree(facts.tree),
          guarded(name),
          known(tree.nodes.size(), kUnknown),
          guardEnds(tree.nodes.size(), 0) {}

    bool covers(NodeIndex node) {
        std::vector<NodeIndex> path;
        NodeIndex at = node;
        for (; at != 0 && known[at] == kUnknown; at = tree[at].parent) {
            path.push_back(at);
            if (isCoveredBy(tree[at].parent, at)) break;
        }
        const Answer answer = at != 0 && known[at] != kNo ? kYes : kNo;
        for (const NodeIndex passed : path) known[passed] = answer;
        return answer == kYes;
    }

private:
    enum Answer : std::uint8_t { kUnknown, kYes, kNo };
    // What a condition says of the name when it is true, and when it is false: that it exists, or nothing.
    struct Meaning {
        bool whenTrue, whenFalse;
    };
    static constexpr int kDeepest = 50;  // conditions in conditions

    // By a node, of all that is in one of its children.
    bool isCoveredBy(NodeIndex node, NodeIndex child) {
        const ScriptNode& above = tree[node];
        switch (above.kind) {
            case NodeKind::ifElse:
            case NodeKind::conditional: {
                if (child == above.firstChild) return false;
                const Meaning test = meaningOf(above.firstChild);
                return child == tree.childOf(node, 1) ? test.whenTrue : test.whenFalse;
            }
            case NodeKind::binary: {
                if (child == above.firstChild) return false;
                if (above.text == "&&") return meaningOf(above.firstChild).whenTrue;
                return above.text == "||" && meaningOf(above.firstChild).whenFalse;
            }
            case NodeKind::attempt:
                return script.scopes.isInAttempt(child);
            case NodeKind::block:
            case NodeKind::program:
                return tree[child].begin >= guardEndOf(node);
            default:
                return false;
        }
    }

    // The end of a block's first statement that leaves the block unless the name exists. Without such a statement it is
    // past the end of the text.
    std::uint32_t guardEndOf(NodeIndex block) {
        if (guardEnds[block] != 0) return guardEnds[block];
        guardEnds[block] = ~std::uint32_t{0};
        for (NodeIndex child = tree[block].firstChild; child != 0; child = tree[child].nextSibling) {
            const bool isGuard = tree[child].kind == NodeKind::ifElse && leaves(tree.childOf(child, 1)) &&
                                 meaningOf(tree[child].firstChild).whenFalse;
            if (!isGuard) continue;
            guardEnds[block] = tree[child].end;
            break;
        }
        return guardEnds[block];
    }

    bool leaves(NodeIndex branch) const {
        if (tree[branch].kind == NodeKind::block) branch = tree[branch].lastChild;
        return branch != 0 && tree[branch].kind == NodeKind::leave;
    }

    Meaning meaningOf(NodeIndex test, int depth = 0) const {
        test = tree.inside(test);
        const ScriptNode& here = tree[test];
        if (depth > kDeepest) return {true, true};  // a missed finding is better than a false one
        if (here.kind == NodeKind::unary && here.text == "!") {
            const Meaning inner = meaningOf(here.firstChild, depth + 1);
            return {inner.whenFalse, inner.whenTrue};
        }
        if (here.kind == NodeKind::binary && (here.text == "&&" || here.text == "||")) {
            const Meaning left = meaningOf(here.firstChild, depth + 1), right = meaningOf(here.lastChild, depth + 1);
            if (here.text == "&&") return {left.whenTrue || right.whenTrue, left.whenFalse && right.whenFalse};
            return {left.whenTrue && right.whenTrue, left.whenFalse || right.whenFalse};
        }
        if (here.kind == NodeKind::binary) return meaningOfComparison(here);
        if (here.kind == NodeKind::member) return {here.text == guarded, false};
        if (here.kind == NodeKind::identifier && script.scopes.variableOf(test) != ScriptScopes::kNone) {
            const auto& values = script.scopes.variables()[script.scopes.variableOf(test)].values;
            if (values.size() == 1) return meaningOf(values.front(), depth + 1);
        }
        return {false, false};
    }

    // "typeof x" against a text; "x" in an object.
    Meaning meaningOfComparison(const ScriptNode& comparison) const {
        const ScriptNode& left = tree[tree.inside(comparison.firstChild)];
        const ScriptNode& right = tree[tree.inside(comparison.lastChild)];
        if (comparison.text == "in") return {left.kind == NodeKind::text && left.text == guarded, false};
        const bool isEqual = comparison.text == "==" || comparison.text == "===";
        const bool isUnequal = comparison.text == "!=" || comparison.text == "!==";
        const bool isSwapped = right.kind == NodeKind::typeOf;
        const ScriptNode& asked = isSwapped ? right : left;
        const ScriptNode& type = isSwapped ? left : right;
        const NodeIndex operand = tree.inside(asked.firstChild);
        const bool isGuard = (isEqual || isUnequal) && asked.kind == NodeKind::typeOf && type.kind == NodeKind::text &&
                             tree[operand].text == guarded;
        const bool existsWhenEqual = type.text != "undefined";
        return {isGuard && isEqual == existsWhenEqual, isGuard && isEqual != existsWhenEqual};
    }

    const ScriptFacts& script;
    const ScriptTree& tree;
    std::string_view guarded;
    std::vector<Answer> known;
    std::vector<std::uint32_t> guardEnds;
};

}  // namespace

void FindUnguardedConsole(const ScriptFacts& script, ScriptFindings& findings) {
    for (const std::string_view name : {"console", "print"}) {
        Guards guards(script, name);
        for (NodeIndex node = script.tree.after(0); node != 0; node = script.tree.after(node)) {
            if (!script.isEngineName(node, name) || script.scopes.isInWith(node)) continue;
            if (script.tree.parentOf(node).kind == NodeKind::typeOf || guards.covers(node)) continue;
            findings.push_back({"script/unguarded-console", script.tree[node].begin,
                                fmt::format("hosts have no {}: there the script ends here with an error", name),
                                fmt::format("write if (typeof {0} !== 'undefined') before it", name)});
        }
    }
}

}  // namespace quillon::cli
