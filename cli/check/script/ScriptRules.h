#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "cli/check/script/EngineNames.h"
#include "cli/check/script/ScriptScopes.h"
#include "cli/check/script/ScriptTree.h"

namespace quillon::cli {

// A finding of a rule of the table, at a place in the prepared text.
struct ScriptFinding {
    static constexpr std::uint32_t kNoPlace = ~std::uint32_t{0};  // concerns the whole script

    std::string_view rule;
    std::uint32_t place;  // bytes
    std::string text;
    std::string remedy = {};
};
using ScriptFindings = std::vector<ScriptFinding>;

// What rules look at: a whole script.
struct ScriptFacts {
    const ScriptTree& tree;
    const ScriptScopes& scopes;
    const EngineNames& engine;

    // A name that neither the script declares nor a variable of the same name hides: it means the engine's.
    bool isEngineName(NodeIndex node, std::string_view name) const {
        return tree[node].kind == NodeKind::identifier && tree[node].text == name &&
               scopes.variableOf(node) == ScriptScopes::kNone;
    }
};

// Each adds what it finds, in no order.
void FindUndeclaredNames(const ScriptFacts& script, ScriptFindings& findings);
void FindUnknownMembers(const ScriptFacts& script, ScriptFindings& findings);
void FindUnknownMethods(const ScriptFacts& script, ScriptFindings& findings);
void FindWrongArgumentCounts(const ScriptFacts& script, ScriptFindings& findings);
void FindEntryPointCapitals(const ScriptFacts& script, ScriptFindings& findings);
void FindShadowedFunctions(const ScriptFacts& script, ScriptFindings& findings);
void FindUnguardedConsole(const ScriptFacts& script, ScriptFindings& findings);
void FindMissingEntryPoints(const ScriptFacts& script, ScriptFindings& findings);
void FindImplicitGlobals(const ScriptFacts& script, ScriptFindings& findings);
void FindChanceInDraw(const ScriptFacts& script, ScriptFindings& findings);

}  // namespace quillon::cli
