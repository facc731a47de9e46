// Functions of a script, arrows and classes among them.

#include <utility>

#include "cli/check/script/ParserNesting.h"
#include "cli/check/script/ScriptParser.h"

namespace quillon::cli {

NodeIndex ScriptParser::function(bool isStatement) {
    const NodeIndex node = make(NodeKind::function);
    tree.nodes[node].isDeclaration = isStatement;
    const bool isAsync = isWord("async");
    if (isAsync) {
        note(What::asyncFunction);
        advance();
    }
    advance();
    const bool isGenerator = isMark("*");
    if (isGenerator) {
        note(What::generator);
        advance();
    }
    if (isName()) {
        tree.nodes[node].place = static_cast<std::uint32_t>(token.begin);
        attach(node, makeWord(NodeKind::binding));
    } else if (isStatement) {
        throw GiveUp();
    }
    const bool wasInAsync = std::exchange(isInAsync, isAsync);
    const bool wasInGenerator = std::exchange(isInGenerator, isGenerator);
    functionRest(node);
    isInAsync = wasInAsync;
    isInGenerator = wasInGenerator;
    return finish(node);
}

void ScriptParser::functionRest(NodeIndex node) {
    parameters(node);
    functionBody(node);
}

void ScriptParser::functionBody(NodeIndex node) {
    const Nesting nesting(*this);
    const bool tookIn = std::exchange(takesIn, true);
    attach(node, block());
    takesIn = tookIn;
    finish(node);
}

void ScriptParser::parameters(NodeIndex node) {
    const bool tookIn = std::exchange(takesIn, true);
    expectMark("(");
    while (!isMark(")")) {
        const NodeIndex parameter = make(NodeKind::parameter);
        if (isMark("...")) {
            note(What::restParameter);
            advance();
        }
        if (isMark("[") || isMark("{")) {
            note(What::destructuring);
            const NodeIndex pattern = primary();
            makePattern(pattern, true);
            attach(parameter, pattern);
        } else {
            if (!isName()) throw GiveUp();
            attach(parameter, makeWord(NodeKind::binding));
        }
        if (isMark("=")) {
            note(What::defaultArgument);
            advance();
            attach(parameter, assignment());
        }
        attach(node, finish(parameter));
        if (isMark(")")) break;
        if (isMark(",") && peek().isMark(")")) note(What::trailingComma);
        expectMark(",");
    }
    advance();
    takesIn = tookIn;
}

// From the arrow on. What is in front of it was read as an expression: a name, or a group.
NodeIndex ScriptParser::arrowFrom(NodeIndex head) {
    const Nesting nesting(*this);
    const NodeIndex node = make(NodeKind::function);
    tree.nodes[node].begin = tree[head].begin;
    note(What::arrow);
    NodeIndex parameter = head;
    if (tree[head].kind == NodeKind::group) {
        parameter = tree[head].firstChild;
        if (parameter != 0 && tree[parameter].kind == NodeKind::sequence) parameter = tree[parameter].firstChild;
    } else {
        tree.nodes[parameter].nextSibling = 0;
    }
    while (parameter != 0) {
        const NodeIndex next = tree[parameter].nextSibling;
        const NodeIndex holder = make(NodeKind::parameter);
        if (tree[parameter].kind == NodeKind::assign) note(What::defaultArgument, tree[parameter].place);
        makePattern(parameter, true);
        attach(holder, parameter);
        attach(node, holder);
        parameter = next;
    }
    advance();
    if (isMark("{")) {
        functionBody(node);
    } else {
        attach(node, assignment());
    }
    return finish(node);
}

NodeIndex ScriptParser::classRest(NodeIndex node) {
    if (takeWord("extends")) attach(node, postfix());
    expectMark("{");
    while (!takeMark("}")) {
        if (!takeMark(";")) classMember(node);
    }
    return finish(node);
}

// A method, a field or a block of statements, all in the property that is added to the class.
void ScriptParser::classMember(NodeIndex klass) {
    const NodeIndex member = make(NodeKind::property);
    for (const std::string_view word : {"static", "async", "get", "set"}) {
        const ScriptToken following = isWord(word) ? peek() : ScriptToken();
        const bool isModifier = following.kind == ScriptToken::Kind::word ||
                                following.kind == ScriptToken::Kind::text || following.isMark("[") ||
                                following.isMark("*") || following.isMark("#") || following.isMark("{");
        if (isModifier) advance();
    }
    takeMark("*");
    takeMark("#");
    if (isMark("{")) {
        attach(member, block());
    } else {
        propertyKey(member);
        if (isMark("(")) {
            attach(member, method());
        } else {
            if (takeMark("=")) attach(member, assignment());
            expectStatementEnd();
        }
    }
    attach(klass, finish(member));
}

NodeIndex ScriptParser::method() {
    const Nesting nesting(*this);
    const NodeIndex node = make(NodeKind::function);
    const bool wasInAsync = std::exchange(isInAsync, false);
    const bool wasInGenerator = std::exchange(isInGenerator, false);
    functionRest(node);
    isInAsync = wasInAsync;
    isInGenerator = wasInGenerator;
    return finish(node);
}

}  // namespace quillon::cli
