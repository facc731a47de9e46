#include "cli/check/script/GlobalObject.h"

namespace quillon::cli {

namespace {

// `this` may be the global object wherever code is not strict; globalThis always is.
bool MayBeGlobalObject(const ScriptFacts& script, NodeIndex node) {
    const bool isSelf = script.tree[node].kind == NodeKind::self && !script.scopes.isStrict(node);
    return isSelf || script.isEngineName(node, "globalThis");
}

// eval, and Function unless it is only looked at: `Function.prototype`, `x instanceof Function`, `typeof Function`.
bool RunsTexts(const ScriptFacts& script, NodeIndex node) {
    const ScriptTree& tree = script.tree;
    const ScriptNode& above = tree.parentOf(node);
    if (above.kind == NodeKind::typeOf) return false;
    if (script.isEngineName(node, "eval")) return true;
    if (script.isEngineName(node, "Function"))
        return above.kind != NodeKind::member && !(above.kind == NodeKind::binary && above.lastChild == node);
    // (function () {}).constructor("return this")
    const bool isCalled = above.kind == NodeKind::call && above.firstChild == node;
    return isCalled && tree[node].kind == NodeKind::member && tree[node].text == "constructor";
}

}  // namespace

std::optional<std::set<std::string_view>> NamesGivenToGlobalObject(const ScriptFacts& script) {
    const ScriptTree& tree = script.tree;
    std::set<std::string_view> direct, members, keys;  // set on the object itself, on any object, in object literals
    bool isAliased = false, isHandedOut = false, hasComputed = false;
    for (NodeIndex node = tree.after(0); node != 0; node = tree.after(node)) {
        const ScriptNode& here = tree[node];
        if (RunsTexts(script, node)) return {};
        if (here.kind == NodeKind::property && !here.text.empty()) keys.insert(here.text);
        if (here.kind == NodeKind::member && here.isWritten) members.insert(here.text);
        if (here.kind == NodeKind::index && here.isWritten) {
            const ScriptNode& key = tree[tree.inside(here.lastChild)];
            const bool isOnGlobalObject = MayBeGlobalObject(script, tree.inside(here.firstChild));
            if (key.kind == NodeKind::text) {
                members.insert(key.text);
            } else if (isOnGlobalObject) {
                return {};
            } else if (key.kind != NodeKind::literal) {
                hasComputed = true;
            }
        }
        if (!MayBeGlobalObject(script, node)) continue;
        const ScriptNode& above = tree.parentOf(node);
        const bool isMemberOf =
            (above.kind == NodeKind::member || above.kind == NodeKind::index) && above.firstChild == node;
        if (isMemberOf) {
            if (above.isWritten && above.kind == NodeKind::member) direct.insert(above.text);
            if (above.isWritten && above.kind == NodeKind::index) direct.insert(tree[above.lastChild].text);
            continue;
        }
        isAliased = true;
        isHandedOut = isHandedOut || !script.scopes.isInFunction(node) || here.kind != NodeKind::self;
        // Object.defineProperty(this, "x", ...)
        const ScriptNode& argument = tree[here.nextSibling];
        if (above.kind == NodeKind::call && argument.kind == NodeKind::text) direct.insert(argument.text);
    }
    if (isHandedOut && hasComputed) return {};
    if (isAliased) direct.merge(members);
    if (isHandedOut) direct.merge(keys);
    return direct;
}

}  // namespace quillon::cli
