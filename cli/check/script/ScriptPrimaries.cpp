// The smallest expressions of a script: names, literals, and what is in brackets.

#include <utility>

#include "cli/check/script/ParserNesting.h"
#include "cli/check/script/ScriptParser.h"

namespace quillon::cli {

NodeIndex ScriptParser::primary() {
    struct Form {
        std::string_view start;
        NodeIndex (ScriptParser::*parse)();
    };
    static constexpr Form kForms[] = {
        {"(", &ScriptParser::group},
        {"[", &ScriptParser::array},
        {"{", &ScriptParser::object},
        {"`", &ScriptParser::templateString},
        {"/", &ScriptParser::regularExpression},
        {"/=", &ScriptParser::regularExpression},
        {"null", &ScriptParser::literal},
        {"true", &ScriptParser::literal},
        {"false", &ScriptParser::literal},
        {"super", &ScriptParser::superObject},
        {"import", &ScriptParser::moduleStatement},
    };
    const Nesting nesting(*this);
    if (token.kind == ScriptToken::Kind::number || token.kind == ScriptToken::Kind::text) return literal();
    if (isName() && !(isWord("async") && isFunctionAfterAsync())) return makeWord(NodeKind::identifier);
    if (isWord("function") || isWord("async")) return function(false);
    if (isWord("this")) return makeWord(NodeKind::self);
    for (const Form& form : kForms)
        if (token.source == form.start) return (this->*form.parse)();
    if (!isWord("class")) throw GiveUp();
    const NodeIndex node = make(NodeKind::klass);
    note(What::classes);
    advance();
    if (isName()) attach(node, makeWord(NodeKind::binding));
    return classRest(node);
}

NodeIndex ScriptParser::literal() {
    const bool isText = token.kind == ScriptToken::Kind::text;
    const NodeIndex node = make(isText ? NodeKind::text : NodeKind::literal);
    tree.nodes[node].text = isText ? token.source.substr(1, token.source.size() - 2) : token.source;
    advance();
    return finish(node);
}

NodeIndex ScriptParser::superObject() {
    note(What::superObject);
    return makeWord(NodeKind::literal);
}

NodeIndex ScriptParser::regularExpression() {
    const NodeIndex node = make(NodeKind::literal);
    take(lexer.regularExpressionAt(token));
    advance();
    return finish(node);
}

NodeIndex ScriptParser::templateString() {
    const NodeIndex node = make(NodeKind::literal);
    note(What::templateString);
    take(lexer.templateTextAt(token.end()));
    while (!token.source.ends_with("`")) {
        advance();
        attach(node, expression());
        if (!isMark("}")) throw GiveUp();
        take(lexer.templateTextAt(token.end()));
    }
    advance();
    return finish(node);
}

// Empty, or ending in a rest: the parameters of an arrow.
NodeIndex ScriptParser::group() {
    const NodeIndex node = make(NodeKind::group);
    advance();
    const bool tookIn = std::exchange(takesIn, true);
    const bool isForArrow = isMark(")") || isMark("...");
    if (isMark("...")) {
        attach(node, spread());
    } else if (!isMark(")")) {
        attach(node, expression());
    }
    takesIn = tookIn;
    expectMark(")");
    if (isForArrow && !isMark("=>")) throw GiveUp();
    return finish(node);
}

NodeIndex ScriptParser::array() {
    const NodeIndex node = make(NodeKind::array);
    list(node, "]");
    return node;
}

NodeIndex ScriptParser::object() {
    const NodeIndex node = make(NodeKind::object);
    const bool tookIn = std::exchange(takesIn, true);
    advance();
    while (!isMark("}")) {
        attach(node, isMark("...") ? spread() : property());
        if (!isMark("}")) expectMark(",");
    }
    takesIn = tookIn;
    advance();
    return finish(node);
}

NodeIndex ScriptParser::property() {
    const NodeIndex node = make(NodeKind::property);
    const ScriptToken following = peek();
    const bool isKey = following.isMark(":") || following.isMark(",") || following.isMark("(") ||
                       following.isMark("}") || following.isMark("=");
    if ((isWord("get") || isWord("set")) && !isKey) {
        if (following.isMark("[")) note(What::computedAccessor);
        advance();
        propertyKey(node);
        attach(node, method());
        return finish(node);
    }
    if (isWord("async") && !isKey) {
        note(What::asyncFunction);
        advance();
    }
    if (isMark("*")) {
        note(What::generator);
        advance();
    }
    const bool isShorthand = isName() && !following.isMark(":") && !following.isMark("(");
    if (isShorthand) {
        tree.nodes[node].text = token.name;
        NodeIndex value = makeWord(NodeKind::identifier);
        if (isMark("=")) {  // the default of a pattern
            value = makeAround(NodeKind::assign, value);
            tree.nodes[value].text = "=";
            advance();
            attach(value, assignment());
        }
        attach(node, value);
        return finish(node);
    }
    propertyKey(node);
    if (isMark("(")) {
        attach(node, method());
    } else {
        expectMark(":");
        attach(node, assignment());
    }
    return finish(node);
}

void ScriptParser::propertyKey(NodeIndex property) {
    if (isMark("[")) {
        advance();
        attach(property, assignment());
        return expectMark("]");
    }
    const bool isText = token.kind == ScriptToken::Kind::text;
    const bool isName = token.kind == ScriptToken::Kind::word || token.kind == ScriptToken::Kind::number;
    if (!isText && !isName) throw GiveUp();
    tree.nodes[property].place = static_cast<std::uint32_t>(token.begin);
    tree.nodes[property].text = isText ? token.source.substr(1, token.source.size() - 2) : token.source;
    advance();
}

void ScriptParser::makePattern(NodeIndex node, bool declares) {
    ScriptNode& target = tree.nodes[node];
    switch (target.kind) {
        case NodeKind::identifier:
            target.isWritten = true;
            if (declares) target.kind = NodeKind::binding;
            break;
        case NodeKind::member:
        case NodeKind::index:
            target.isWritten = !declares;
            break;
        case NodeKind::assign:
        case NodeKind::group:
            if (target.firstChild != 0) makePattern(target.firstChild, declares);
            break;
        case NodeKind::property:
            if (target.lastChild != 0) makePattern(target.lastChild, declares);
            break;
        case NodeKind::array:
        case NodeKind::object:
        case NodeKind::spread:
            for (NodeIndex child = target.firstChild; child != 0; child = tree[child].nextSibling)
                makePattern(child, declares);
            break;
        default:
            break;
    }
}

}  // namespace quillon::cli
