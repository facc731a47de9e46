#include <fmt/format.h>

#include <set>

#include "cli/check/script/GlobalObject.h"
#include "cli/check/script/ScriptRules.h"
#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

// The host never calls a function with other capitals. One that the script itself calls is a function of the author's
// own.
void FindEntryPointCapitals(const ScriptFacts& script, ScriptFindings& findings) {
    const auto given = NamesGivenToGlobalObject(script);
    if (!given) return;
    const ScriptTree& tree = script.tree;
    std::set<VariableIndex> used;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node))
        if (tree[node].kind == NodeKind::identifier && !tree[node].isWritten)
            used.insert(script.scopes.variableOf(node));
    for (const std::string_view entry : {"setup", "preRender", "draw", "updateUIFlags"}) {
        if (script.scopes.global(entry) != ScriptScopes::kNone || given->contains(entry)) continue;
        for (VariableIndex index = 0; index < script.scopes.variables().size(); ++index) {
            const ScriptVariable& variable = script.scopes.variables()[index];
            const bool isGlobal = script.scopes.global(variable.name) == index;
            if (!isGlobal || variable.functions.empty() || used.contains(index)) continue;
            if (InLowerCase(std::string(variable.name)) != InLowerCase(std::string(entry))) continue;
            const NodeIndex function = variable.functions.front();
            const NodeIndex place = variable.declaredAt != 0 ? variable.declaredAt : function;
            findings.push_back({"script/entry-point-capitals", tree[place].begin,
                                fmt::format("the host calls {}, and never {}", entry, variable.name),
                                fmt::format("write {}", entry)});
        }
    }
}

}  // namespace quillon::cli
