#pragma once

#include <cstdint>
#include <initializer_list>
#include <string_view>

#include "cli/check/script/ScriptLexer.h"
#include "cli/check/script/ScriptTree.h"

namespace quillon::cli {

// Builds a ScriptTree. Each function for a part of the grammar starts at the current token, ends at the one after the
// part, and returns the part's node without a parent.
class ScriptParser {
public:
    explicit ScriptParser(std::string_view text) : lexer(text, tree.decoded) {}

    ScriptTree parse();

private:
    using What = NewerForm::What;

    struct GiveUp {};  // thrown where the text is no script
    class Nesting;     // counts levels while it lives; throws GiveUp at the deepest

    // Tokens
    void advance();
    void take(const ScriptToken& following);
    ScriptToken peek() const;
    bool isMark(std::string_view mark) const { return token.isMark(mark); }
    bool isWord(std::string_view word) const { return token.isWord(word); }
    bool takeMark(std::string_view mark);
    bool takeWord(std::string_view word);
    void expectMark(std::string_view mark);
    void expectStatementEnd();
    bool isStatementEnd() const;
    bool isName() const;  // a word that may name a variable
    bool isFunctionAfterAsync() const;
    bool isDeclaration() const;  // of variables

    // Nodes
    NodeIndex make(NodeKind kind);                         // starts at the current token
    NodeIndex makeAround(NodeKind kind, NodeIndex first);  // starts where its first child does, and points at the token
    NodeIndex makeWord(NodeKind kind);                     // of the current token, a word, and takes it
    NodeIndex finish(NodeIndex node);                      // ends before the current token
    void attach(NodeIndex parent, NodeIndex child);
    void note(What what);  // at the current token
    void note(What what, std::size_t place);

    // Statements
    NodeIndex statement();
    NodeIndex block();
    NodeIndex variables(bool isInHead);
    NodeIndex ifStatement();
    NodeIndex whileStatement();
    NodeIndex doStatement();
    NodeIndex forStatement();
    NodeIndex forInRest(NodeIndex start, NodeIndex target);
    NodeIndex leaveStatement();
    NodeIndex tryStatement();
    NodeIndex switchStatement();
    NodeIndex withStatement();
    NodeIndex functionStatement();
    NodeIndex classStatement();
    NodeIndex emptyStatement();
    NodeIndex moduleStatement();
    NodeIndex plainStatement();
    NodeIndex condition();  // in parentheses

    // Functions
    NodeIndex function(bool isStatement);
    void functionRest(NodeIndex function);  // from the parameters on
    void functionBody(NodeIndex function);
    void parameters(NodeIndex function);
    NodeIndex arrowFrom(NodeIndex parameters);
    NodeIndex classRest(NodeIndex klass);
    void classMember(NodeIndex klass);

    // Expressions
    NodeIndex expression();
    NodeIndex assignment();
    NodeIndex conditional();
    NodeIndex binary(int least);
    NodeIndex unary();
    NodeIndex postfix();
    NodeIndex callChain(NodeIndex first, bool hasCalls);
    NodeIndex create();
    NodeIndex primary();
    NodeIndex group();
    NodeIndex array();
    NodeIndex object();
    NodeIndex property();
    NodeIndex method();
    NodeIndex spread();
    NodeIndex index(NodeIndex object);
    NodeIndex templateString();
    NodeIndex regularExpression();
    NodeIndex literal();
    NodeIndex superObject();
    void propertyKey(NodeIndex property);
    void arguments(NodeIndex call);
    void list(NodeIndex parent, std::string_view end);
    // Reads an expression again as what is given values: as names that are declared, or as places that are written.
    void makePattern(NodeIndex node, bool declares);

    ScriptTree tree;
    ScriptLexer lexer;
    ScriptToken token;
    std::size_t lastEnd = 0;  // of the token before
    int depth = 0;
    bool takesIn = true;  // "in" is an operator, which it is not in the head of a for
    bool isInAsync = false, isInGenerator = false;
};

}  // namespace quillon::cli
