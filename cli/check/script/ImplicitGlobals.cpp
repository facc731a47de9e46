#include <fmt/format.h>

#include <set>
#include <string>
#include <vector>

#include "cli/check/script/ScriptRules.h"
#include "cli/diagnostics/NearestName.h"

namespace quillon::cli {

// An assignment to a name that nothing declares makes a global. When nothing reads it, and a declared name is near, it
// is probably mistyped.
void FindImplicitGlobals(const ScriptFacts& script, ScriptFindings& findings) {
    const ScriptTree& tree = script.tree;
    std::set<VariableIndex> read;
    std::vector<std::pair<NodeIndex, VariableIndex>> written;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        if (tree[node].kind != NodeKind::identifier) continue;
        const VariableIndex variable = script.scopes.variableOf(node);
        if (variable == ScriptScopes::kNone || script.scopes.variables()[variable].declaredAt != 0) continue;
        if (tree[node].isWritten)
            written.emplace_back(node, variable);
        else
            read.insert(variable);
    }
    std::set<VariableIndex> reported;
    for (const auto& [node, variable] : written) {
        if (read.contains(variable) || !reported.insert(variable).second || script.scopes.isInWith(node)) continue;
        std::vector<std::string> declared;
        for (const std::string& name : script.scopes.namesAt(node))
            if (name != tree[node].text) declared.push_back(name);
        const std::string nearest = DidYouMean(tree[node].text, declared);
        if (nearest.empty()) continue;
        findings.push_back({"script/implicit-global", tree[node].begin,
                            fmt::format("nothing declares {}, and nothing reads it", tree[node].text), nearest});
    }
}

}  // namespace quillon::cli
