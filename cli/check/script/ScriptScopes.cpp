#include "cli/check/script/ScriptScopes.h"

#include <algorithm>
#include <cstddef>

namespace quillon::cli {

namespace {

constexpr ScopeIndex kGlobalScope = 0;

bool SaysStrict(const ScriptTree& tree, NodeIndex function) {
    NodeIndex statement = tree[tree[function].lastChild].firstChild;
    for (; statement != 0; statement = tree[statement].nextSibling) {
        if (tree[statement].kind != NodeKind::expression) return false;
        const ScriptNode& value = tree[tree[statement].firstChild];
        if (value.kind != NodeKind::text) return false;
        if (value.text == "use strict") return true;
    }
    return false;
}

}  // namespace

ScriptScopes::ScriptScopes(const ScriptTree& script)
    : tree(script), places(script.nodes.size()), meaning(script.nodes.size(), kNone) {
    placeNodes();
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node))
        if (tree[node].kind == NodeKind::binding) declare(node);
    resolve();
    addGlobals();
    addValues();
}

// Gives each node what it has from the node around it.
void ScriptScopes::placeNodes() {
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        const ScriptNode& here = tree[node];
        const ScriptNode& above = tree.parentOf(node);
        Place place = places[here.parent];
        if (above.kind == NodeKind::attempt && here.kind == NodeKind::block && above.firstChild == node &&
            tree[here.nextSibling].kind == NodeKind::handler)
            place.flags |= kAttempt;
        if (above.kind == NodeKind::with && above.lastChild == node) place.flags |= kWith;
        if (here.kind == NodeKind::function) {
            place.flags |= kFunction;
            if (SaysStrict(tree, node)) place.flags |= kStrict;
        }
        if (here.kind == NodeKind::function || here.kind == NodeKind::handler) {
            scopes.push_back({.parent = place.scope});
            place.scope = static_cast<ScopeIndex>(scopes.size() - 1);
            if (here.kind == NodeKind::function) place.functionScope = place.scope;
        }
        places[node] = place;
    }
}

void ScriptScopes::declare(NodeIndex binding) {
    const Place& place = places[binding];
    const ScriptNode& holder = tree.parentOf(binding);
    ScopeIndex scope = place.functionScope;
    if (holder.kind == NodeKind::function && holder.isDeclaration) scope = places[holder.parent].functionScope;
    // The name of a function as an expression is known inside of it only; so is what a handler catches.
    NodeIndex outer = tree[binding].parent;
    while (tree[outer].kind == NodeKind::array || tree[outer].kind == NodeKind::object ||
           tree[outer].kind == NodeKind::property || tree[outer].kind == NodeKind::spread)
        outer = tree[outer].parent;
    if (tree[outer].kind == NodeKind::handler) scope = place.scope;
    meaning[binding] = declareIn(scope, tree[binding].text, binding);
}

VariableIndex ScriptScopes::declareIn(ScopeIndex scope, std::string_view name, NodeIndex place) {
    const auto [entry, isNew] = scopes[scope].names.try_emplace(name, static_cast<VariableIndex>(known.size()));
    if (isNew) known.push_back({.name = name, .declaredAt = place});
    return entry->second;
}

VariableIndex ScriptScopes::find(ScopeIndex scope, std::string_view name) const {
    while (true) {
        const auto entry = scopes[scope].names.find(name);
        if (entry != scopes[scope].names.end()) return entry->second;
        if (scope == kGlobalScope) return kNone;
        scope = scopes[scope].parent;
    }
}

void ScriptScopes::resolve() {
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node))
        if (tree[node].kind == NodeKind::identifier) meaning[node] = find(places[node].scope, tree[node].text);
}

// An assignment to a name that nothing declares makes a global of it, except in strict code.
void ScriptScopes::addGlobals() {
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        const bool makesGlobal = tree[node].kind == NodeKind::identifier && tree[node].isWritten &&
                                 meaning[node] == kNone && !isStrict(node);
        if (makesGlobal) declareIn(kGlobalScope, tree[node].text, 0);
    }
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node))
        if (tree[node].kind == NodeKind::identifier && meaning[node] == kNone)
            meaning[node] = find(kGlobalScope, tree[node].text);
}

void ScriptScopes::addValues() {
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        const ScriptNode& here = tree[node];
        const bool isFunction = here.kind == NodeKind::function && here.isDeclaration;
        const bool isSetting = here.kind == NodeKind::variable || (here.kind == NodeKind::assign && here.text == "=");
        const NodeIndex target = tree.inside(here.firstChild);
        if ((!isFunction && !isSetting) || target == 0 || meaning[target] == kNone) continue;
        ScriptVariable& variable = known[meaning[target]];
        const NodeIndex value = isFunction ? node : tree.inside(tree[here.firstChild].nextSibling);
        if (value == 0) continue;
        variable.values.push_back(value);
        if (tree[value].kind == NodeKind::function) variable.functions.push_back(value);
    }
}

VariableIndex ScriptScopes::global(std::string_view name) const {
    const auto entry = scopes[kGlobalScope].names.find(name);
    return entry == scopes[kGlobalScope].names.end() ? kNone : entry->second;
}

std::vector<std::string> ScriptScopes::namesAt(NodeIndex node) const {
    std::vector<std::string> names;
    for (ScopeIndex scope = places[node].scope;; scope = scopes[scope].parent) {
        const std::size_t outer = names.size();
        for (const auto& [name, variable] : scopes[scope].names) names.emplace_back(name);
        std::sort(names.begin() + static_cast<std::ptrdiff_t>(outer), names.end());
        if (scope == kGlobalScope) return names;
    }
}

}  // namespace quillon::cli
