#include "cli/check/script/ScriptTree.h"

namespace quillon::cli {

NodeIndex ScriptTree::childOf(NodeIndex node, int number) const {
    NodeIndex child = nodes[node].firstChild;
    for (; child != 0 && number > 0; --number) child = nodes[child].nextSibling;
    return child;
}

NodeIndex ScriptTree::inside(NodeIndex node) const {
    while (nodes[node].kind == NodeKind::group && nodes[node].firstChild != 0) node = nodes[node].firstChild;
    return node;
}

std::string_view ScriptTree::nameOfFunction(NodeIndex function) const {
    const ScriptNode& first = nodes[nodes[function].firstChild];
    if (first.kind == NodeKind::binding) return first.text;
    NodeIndex value = function;
    while (nodes[nodes[value].parent].kind == NodeKind::group) value = nodes[value].parent;
    const ScriptNode& holder = parentOf(value);
    if (holder.kind == NodeKind::property) return holder.text;
    const bool isNamed = holder.kind == NodeKind::variable || (holder.kind == NodeKind::assign && holder.text == "=");
    return isNamed ? nodes[holder.firstChild].text : std::string_view();
}

NodeIndex ScriptTree::after(NodeIndex node) const {
    if (nodes[node].firstChild != 0) return nodes[node].firstChild;
    while (node != 0 && nodes[node].nextSibling == 0) node = nodes[node].parent;
    return node == 0 ? 0 : nodes[node].nextSibling;
}

}  // namespace quillon::cli
