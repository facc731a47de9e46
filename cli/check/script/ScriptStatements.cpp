// The statements of a script.

#include <utility>

#include "cli/check/script/ParserNesting.h"
#include "cli/check/script/ScriptParser.h"

namespace quillon::cli {

NodeIndex ScriptParser::statement() {
    const Nesting nesting(*this);
    struct Form {
        std::string_view word;
        NodeIndex (ScriptParser::*parse)();
    };
    static constexpr Form kForms[] = {
        {"if", &ScriptParser::ifStatement},          {"for", &ScriptParser::forStatement},
        {"while", &ScriptParser::whileStatement},    {"do", &ScriptParser::doStatement},
        {"return", &ScriptParser::leaveStatement},   {"break", &ScriptParser::leaveStatement},
        {"continue", &ScriptParser::leaveStatement}, {"throw", &ScriptParser::leaveStatement},
        {"try", &ScriptParser::tryStatement},        {"switch", &ScriptParser::switchStatement},
        {"with", &ScriptParser::withStatement},      {"function", &ScriptParser::functionStatement},
        {"class", &ScriptParser::classStatement},    {"import", &ScriptParser::moduleStatement},
        {"export", &ScriptParser::moduleStatement},  {"debugger", &ScriptParser::emptyStatement},
    };
    if (isMark("{")) return block();
    if (isMark(";")) return emptyStatement();
    if (token.kind != ScriptToken::Kind::word) return plainStatement();
    for (const Form& form : kForms)
        if (isWord(form.word)) return (this->*form.parse)();
    if (isWord("async") && isFunctionAfterAsync()) return functionStatement();
    return isDeclaration() ? variables(false) : plainStatement();
}

// "let" is an ordinary name in this edition, unless another name or a pattern follows.
bool ScriptParser::isDeclaration() const {
    if (isWord("var") || isWord("const")) return true;
    if (!isWord("let")) return false;
    const ScriptToken following = peek();
    const bool isNamed = following.kind == ScriptToken::Kind::word && !following.followsLineEnd &&
                         !following.isWord("in") && !following.isWord("instanceof") && !following.isWord("of");
    return isNamed || following.isMark("{") || following.isMark("[");
}

bool ScriptParser::isFunctionAfterAsync() const {
    const ScriptToken following = peek();
    return following.isWord("function") && !following.followsLineEnd;
}

NodeIndex ScriptParser::block() {
    const NodeIndex node = make(NodeKind::block);
    expectMark("{");
    while (!isMark("}")) {
        if (token.kind == ScriptToken::Kind::end) throw GiveUp();
        attach(node, statement());
    }
    advance();
    return finish(node);
}

NodeIndex ScriptParser::emptyStatement() {
    const NodeIndex node = make(NodeKind::empty);
    const bool isWholeStatement = isMark(";");
    advance();
    if (!isWholeStatement) expectStatementEnd();
    return finish(node);
}

// In the head of a for no semicolon is taken.
NodeIndex ScriptParser::variables(bool isInHead) {
    const NodeIndex node = make(NodeKind::variables);
    if (isWord("let")) note(What::letDeclaration);
    if (isWord("const") && isInHead) note(What::constInLoop);
    do {
        advance();
        const NodeIndex variable = make(NodeKind::variable);
        if (isMark("[") || isMark("{")) {
            note(What::destructuring);
            const NodeIndex pattern = primary();
            makePattern(pattern, true);
            attach(variable, pattern);
        } else {
            if (!isName()) throw GiveUp();
            attach(variable, makeWord(NodeKind::binding));
        }
        if (takeMark("=")) attach(variable, assignment());
        attach(node, finish(variable));
    } while (isMark(","));
    if (!isInHead) expectStatementEnd();
    return finish(node);
}

NodeIndex ScriptParser::condition() {
    expectMark("(");
    const NodeIndex node = expression();
    expectMark(")");
    return node;
}

// A chain of "else if" is a loop here: it may be long, and it is not deep.
NodeIndex ScriptParser::ifStatement() {
    const NodeIndex first = make(NodeKind::ifElse);
    NodeIndex node = first;
    while (true) {
        advance();
        attach(node, condition());
        attach(node, statement());
        if (!takeWord("else")) break;
        if (!isWord("if")) {
            attach(node, statement());
            break;
        }
        const NodeIndex next = make(NodeKind::ifElse);
        attach(node, next);
        node = next;
    }
    for (NodeIndex at = node; at != first; at = tree[at].parent) finish(at);
    return finish(first);
}

NodeIndex ScriptParser::whileStatement() {
    const NodeIndex node = make(NodeKind::loop);
    advance();
    attach(node, condition());
    attach(node, statement());
    return finish(node);
}

NodeIndex ScriptParser::doStatement() {
    const NodeIndex node = make(NodeKind::loop);
    advance();
    attach(node, statement());
    if (!takeWord("while")) throw GiveUp();
    attach(node, condition());
    takeMark(";");
    return finish(node);
}

NodeIndex ScriptParser::forStatement() {
    const NodeIndex node = make(NodeKind::loop);
    advance();
    if (isWord("await")) {
        note(What::await);
        advance();
    }
    expectMark("(");
    const bool takesInOutside = std::exchange(takesIn, false);
    if (!isMark(";")) {
        const bool declares = isDeclaration();
        const NodeIndex start = declares ? variables(true) : expression();
        if (isWord("in") || isWord("of")) {
            takesIn = takesInOutside;
            if (!declares) makePattern(start, false);
            return forInRest(node, start);
        }
        attach(node, start);
    }
    takesIn = takesInOutside;
    expectMark(";");
    if (!isMark(";")) attach(node, expression());
    expectMark(";");
    if (!isMark(")")) attach(node, expression());
    expectMark(")");
    attach(node, statement());
    return finish(node);
}

NodeIndex ScriptParser::forInRest(NodeIndex node, NodeIndex target) {
    tree.nodes[node].kind = NodeKind::forIn;
    attach(node, target);
    if (isWord("of")) note(What::forOf);
    advance();
    attach(node, expression());
    expectMark(")");
    attach(node, statement());
    return finish(node);
}

NodeIndex ScriptParser::leaveStatement() {
    const NodeIndex node = make(NodeKind::leave);
    const bool takesLabel = isWord("break") || isWord("continue");
    advance();
    if (takesLabel) {
        if (!isStatementEnd()) advance();
    } else if (!isStatementEnd()) {
        attach(node, expression());
    }
    expectStatementEnd();
    return finish(node);
}

NodeIndex ScriptParser::tryStatement() {
    const NodeIndex node = make(NodeKind::attempt);
    advance();
    attach(node, block());
    if (isWord("catch")) {
        const NodeIndex handler = make(NodeKind::handler);
        const std::size_t place = token.begin;
        advance();
        if (takeMark("(")) {
            NodeIndex caught = primary();
            if (tree[caught].kind != NodeKind::identifier) note(What::destructuring, tree[caught].begin);
            makePattern(caught, true);
            attach(handler, caught);
            expectMark(")");
        } else {
            note(What::catchWithoutName, place);
        }
        attach(handler, block());
        attach(node, finish(handler));
    } else if (!isWord("finally")) {
        throw GiveUp();
    }
    if (takeWord("finally")) attach(node, block());
    return finish(node);
}

NodeIndex ScriptParser::switchStatement() {
    const NodeIndex node = make(NodeKind::select);
    advance();
    attach(node, condition());
    expectMark("{");
    while (!takeMark("}")) {
        if (takeWord("case")) {
            attach(node, expression());
            expectMark(":");
        } else if (takeWord("default")) {
            expectMark(":");
        } else {
            if (token.kind == ScriptToken::Kind::end) throw GiveUp();
            attach(node, statement());
        }
    }
    return finish(node);
}

NodeIndex ScriptParser::withStatement() {
    const NodeIndex node = make(NodeKind::with);
    advance();
    attach(node, condition());
    attach(node, statement());
    return finish(node);
}

NodeIndex ScriptParser::functionStatement() {
    return function(true);
}

NodeIndex ScriptParser::classStatement() {
    const NodeIndex node = make(NodeKind::klass);
    note(What::classes);
    advance();
    if (!isName()) throw GiveUp();
    attach(node, makeWord(NodeKind::binding));
    return classRest(node);
}

// What modules name is not known here: nothing else can be said of such a text.
NodeIndex ScriptParser::moduleStatement() {
    note(What::module);
    throw GiveUp();
}

NodeIndex ScriptParser::plainStatement() {
    const NodeIndex node = make(NodeKind::expression);
    const NodeIndex value = expression();
    attach(node, value);
    if (tree[value].kind == NodeKind::identifier && takeMark(":")) {
        tree.nodes[value].kind = NodeKind::empty;
        tree.nodes[node].kind = NodeKind::labeled;
        attach(node, statement());
        return finish(node);
    }
    expectStatementEnd();
    return finish(node);
}

}  // namespace quillon::cli
