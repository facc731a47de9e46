// The expressions of a script: operators, calls and members.

#include <algorithm>
#include <utility>

#include "cli/check/script/ParserNesting.h"
#include "cli/check/script/ScriptParser.h"

namespace quillon::cli {

namespace {

struct Operator {
    std::string_view sign;
    int level;  // the higher one binds first
};

constexpr Operator kBinaryOperators[] = {
    {"??", 1},  {"||", 2},  {"&&", 3}, {"|", 4},  {"^", 5},  {"&", 6},  {"==", 7},  {"!=", 7},
    {"===", 7}, {"!==", 7}, {"<", 8},  {">", 8},  {"<=", 8}, {">=", 8}, {"<<", 9},  {">>", 9},
    {">>>", 9}, {"+", 10},  {"-", 10}, {"*", 11}, {"/", 11}, {"%", 11}, {"**", 12},
};
constexpr int kRelational = 8, kPower = 12;

constexpr std::string_view kAssignments[] = {
    "=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>=", ">>>=", "**=", "&&=", "||=", "?\?="};

}  // namespace

NodeIndex ScriptParser::expression() {
    const NodeIndex first = assignment();
    if (!isMark(",")) return first;
    const NodeIndex node = makeAround(NodeKind::sequence, first);
    while (takeMark(",")) {
        // Only the parameters of an arrow end in a comma or in a rest.
        if (isMark(")") && peek().isMark("=>")) {
            note(What::trailingComma, lastEnd - 1);
            break;
        }
        attach(node, isMark("...") ? spread() : assignment());
    }
    return finish(node);
}

NodeIndex ScriptParser::assignment() {
    const Nesting nesting(*this);
    if (isWord("async") && !peek().followsLineEnd) {
        const ScriptToken following = peek();
        const bool isNameFollowing = following.kind == ScriptToken::Kind::word && !following.isWord("function") &&
                                     !following.isWord("in") && !following.isWord("instanceof");
        if (isNameFollowing) {  // async x => ...
            note(What::asyncFunction);
            advance();
        }
    }
    if (isInGenerator && isWord("yield")) {
        const NodeIndex node = make(NodeKind::unary);
        advance();
        takeMark("*");
        if (!isStatementEnd() && !isMark(")") && !isMark("]") && !isMark(",") && !isMark(":"))
            attach(node, assignment());
        return finish(node);
    }
    const NodeIndex left = conditional();
    const NodeKind kind = tree[left].kind;
    if (isMark("=>") && (kind == NodeKind::identifier || kind == NodeKind::group || kind == NodeKind::call)) {
        if (kind != NodeKind::call) return arrowFrom(left);
        // async (x) => ..., read as a call so far.
        note(What::asyncFunction, tree[left].begin);
        const NodeIndex head = make(NodeKind::group);
        NodeIndex argument = tree[tree[left].firstChild].nextSibling;
        while (argument != 0) {
            const NodeIndex next = tree[argument].nextSibling;
            attach(head, argument);
            argument = next;
        }
        return arrowFrom(head);
    }
    const bool isAssignment = token.kind == ScriptToken::Kind::mark &&
                              std::ranges::find(kAssignments, token.source) != std::end(kAssignments);
    if (!isAssignment) return left;
    if (isMark("&&=") || isMark("||=") || isMark("?\?=")) note(What::logicalAssignment);
    if (isMark("=")) {
        if (kind == NodeKind::array || kind == NodeKind::object) note(What::destructuring, tree[left].begin);
        makePattern(left, false);
    }
    const NodeIndex node = makeAround(NodeKind::assign, left);
    tree.nodes[node].text = token.source;
    advance();
    attach(node, assignment());
    return finish(node);
}

NodeIndex ScriptParser::conditional() {
    const NodeIndex test = binary(1);
    if (!isMark("?")) return test;
    const NodeIndex node = makeAround(NodeKind::conditional, test);
    advance();
    const bool tookIn = std::exchange(takesIn, true);
    attach(node, assignment());
    takesIn = tookIn;
    expectMark(":");
    attach(node, assignment());
    return finish(node);
}

NodeIndex ScriptParser::binary(int least) {
    NodeIndex left = unary();
    while (true) {
        int level = 0;
        if (token.kind == ScriptToken::Kind::mark) {
            for (const Operator& known : kBinaryOperators)
                if (token.source == known.sign) level = known.level;
        } else if (isWord("instanceof") || (takesIn && isWord("in"))) {
            level = kRelational;
        }
        if (level == 0 || level < least) return left;
        if (isMark("??")) note(What::nullish);
        left = makeAround(NodeKind::binary, left);
        tree.nodes[left].text = token.source;
        advance();
        const Nesting nesting(*this);
        attach(left, binary(level == kPower ? level : level + 1));
        finish(left);
    }
}

NodeIndex ScriptParser::unary() {
    constexpr std::string_view kSigns[] = {"+", "-", "~", "!", "++", "--"};
    const bool isSign =
        token.kind == ScriptToken::Kind::mark && std::ranges::find(kSigns, token.source) != std::end(kSigns);
    const bool isAwait = isInAsync && isWord("await");
    if (!isSign && !isAwait && !isWord("typeof") && !isWord("void") && !isWord("delete")) return postfix();
    const Nesting nesting(*this);
    const NodeIndex node = make(isWord("typeof") ? NodeKind::typeOf : NodeKind::unary);
    tree.nodes[node].text = token.source;
    if (isAwait) note(What::await);
    advance();
    attach(node, unary());
    return finish(node);
}

NodeIndex ScriptParser::postfix() {
    const NodeIndex operand = isWord("new") ? callChain(create(), true) : callChain(primary(), true);
    if (token.followsLineEnd || !(isMark("++") || isMark("--"))) return operand;
    const NodeIndex node = makeAround(NodeKind::unary, operand);
    tree.nodes[node].text = token.source;
    advance();
    return finish(node);
}

NodeIndex ScriptParser::index(NodeIndex object) {
    const NodeIndex node = makeAround(NodeKind::index, object);
    advance();
    const bool tookIn = std::exchange(takesIn, true);
    attach(node, expression());
    takesIn = tookIn;
    expectMark("]");
    return finish(node);
}

NodeIndex ScriptParser::callChain(NodeIndex first, bool hasCalls) {
    NodeIndex left = first;
    while (true) {
        const bool isOptional = isMark("?.");
        if (isOptional) {
            note(What::optionalChaining);
            advance();
        }
        if (isMark("(") && hasCalls) {
            left = makeAround(NodeKind::call, left);
            arguments(left);
        } else if (isMark("[")) {
            left = index(left);
        } else if (isMark("`")) {
            left = makeAround(NodeKind::call, left);
            attach(left, templateString());
        } else if (isOptional || isMark(".")) {
            if (!isOptional) advance();
            takeMark("#");
            if (token.kind != ScriptToken::Kind::word) throw GiveUp();
            left = makeAround(NodeKind::member, left);
            tree.nodes[left].text = token.name;
            advance();
        } else {
            return left;
        }
        finish(left);
    }
}

NodeIndex ScriptParser::create() {
    const Nesting nesting(*this);
    const NodeIndex node = make(NodeKind::create);
    advance();
    if (takeMark(".")) {  // new.target
        tree.nodes[node].kind = NodeKind::literal;
        advance();
        return finish(node);
    }
    attach(node, isWord("new") ? create() : callChain(primary(), false));
    if (isMark("(")) arguments(node);
    return finish(node);
}

void ScriptParser::arguments(NodeIndex call) {
    list(call, ")");
}

// From the opening bracket on. Holes are for arrays only, and a comma at the end too.
void ScriptParser::list(NodeIndex parent, std::string_view end) {
    const bool tookIn = std::exchange(takesIn, true);
    const bool isArray = end == "]";
    advance();
    while (!isMark(end)) {
        if (isArray && isMark(",")) {
            attach(parent, make(NodeKind::empty));
        } else {
            attach(parent, isMark("...") ? spread() : assignment());
        }
        if (isMark(end)) break;
        if (!isArray && isMark(",") && peek().isMark(end)) note(What::trailingComma);
        expectMark(",");
    }
    takesIn = tookIn;
    advance();
    finish(parent);
}

NodeIndex ScriptParser::spread() {
    const NodeIndex node = make(NodeKind::spread);
    note(What::spread);
    advance();
    attach(node, assignment());
    return finish(node);
}

}  // namespace quillon::cli
