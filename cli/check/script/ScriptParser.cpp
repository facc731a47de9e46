#include "cli/check/script/ScriptParser.h"

#include <algorithm>
#include <utility>

#include "cli/check/script/ParserNesting.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kReservedWords[] = {
    "break", "case",   "catch", "class",      "const",   "continue", "debugger", "default", "delete",
    "do",    "else",   "enum",  "export",     "extends", "false",    "finally",  "for",     "function",
    "if",    "import", "in",    "instanceof", "new",     "null",     "return",   "super",   "switch",
    "this",  "throw",  "true",  "try",        "typeof",  "var",      "void",     "while",   "with",
};
static_assert(std::ranges::is_sorted(kReservedWords));

}  // namespace

ScriptTree ParseScript(std::string_view text) {
    return ScriptParser(text).parse();
}

ScriptTree ScriptParser::parse() {
    const NodeIndex program = make(NodeKind::program);
    try {
        advance();
        while (token.kind != ScriptToken::Kind::end) attach(program, statement());
        tree.isWhole = true;
    } catch (const GiveUp&) {
        // What was read so far is in the tree.
        tree.brokenAt = static_cast<std::uint32_t>(token.begin);
        tree.brokenToken = token.source;
    }
    std::ranges::stable_sort(tree.newerForms, {}, &NewerForm::place);
    return std::move(tree);
}

void ScriptParser::advance() {
    lastEnd = token.end();
    take(lexer.next());
}

void ScriptParser::take(const ScriptToken& following) {
    token = following;
    for (const NewerForm& form : lexer.takeForms()) tree.newerForms.push_back(form);
    if (token.kind == ScriptToken::Kind::broken) throw GiveUp();
}

ScriptToken ScriptParser::peek() const {
    return ScriptLexer(lexer).next();
}

bool ScriptParser::takeMark(std::string_view mark) {
    if (!isMark(mark)) return false;
    advance();
    return true;
}

bool ScriptParser::takeWord(std::string_view word) {
    if (!isWord(word)) return false;
    advance();
    return true;
}

void ScriptParser::expectMark(std::string_view mark) {
    if (!takeMark(mark)) throw GiveUp();
}

bool ScriptParser::isStatementEnd() const {
    return isMark(";") || isMark("}") || token.kind == ScriptToken::Kind::end || token.followsLineEnd;
}

void ScriptParser::expectStatementEnd() {
    if (!isStatementEnd()) throw GiveUp();
    takeMark(";");
}

bool ScriptParser::isName() const {
    return token.kind == ScriptToken::Kind::word && !std::ranges::binary_search(kReservedWords, token.source);
}

NodeIndex ScriptParser::make(NodeKind kind) {
    const auto begin = static_cast<std::uint32_t>(token.begin);
    tree.nodes.push_back({.kind = kind, .begin = begin, .end = begin, .place = begin});
    return static_cast<NodeIndex>(tree.nodes.size() - 1);
}

NodeIndex ScriptParser::makeAround(NodeKind kind, NodeIndex first) {
    const NodeIndex node = make(kind);
    tree.nodes[node].begin = tree[first].begin;
    attach(node, first);
    return node;
}

NodeIndex ScriptParser::makeWord(NodeKind kind) {
    if (token.kind != ScriptToken::Kind::word) throw GiveUp();
    const NodeIndex node = make(kind);
    tree.nodes[node].text = token.name;
    advance();
    return finish(node);
}

NodeIndex ScriptParser::finish(NodeIndex node) {
    tree.nodes[node].end = static_cast<std::uint32_t>(lastEnd);
    return node;
}

void ScriptParser::attach(NodeIndex parent, NodeIndex child) {
    ScriptNode& above = tree.nodes[parent];
    tree.nodes[child].parent = parent;
    tree.nodes[child].nextSibling = 0;
    (above.lastChild == 0 ? above.firstChild : tree.nodes[above.lastChild].nextSibling) = child;
    above.lastChild = child;
    above.end = std::max(above.end, tree[child].end);
}

void ScriptParser::note(What what) {
    note(what, token.begin);
}

void ScriptParser::note(What what, std::size_t place) {
    tree.newerForms.push_back({what, static_cast<std::uint32_t>(place)});
}

}  // namespace quillon::cli
