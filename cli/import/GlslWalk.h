#pragma once

#include <cstddef>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/GlslTypes.h"
#include "cli/import/ImportFindings.h"

namespace quillon::cli {

// Walks through a shader statement by statement, works out the types of its expressions and rewrites what the old
// dialect has no form for: whole numbers among floats, remainders and bits, array initializers, switch, constants that
// are worked out, swizzles of single numbers. Macros are not expanded: what stands for a single expression has a type,
// and is rewritten for the types of its first call. What the walk does not understand stays as it is.
class GlslWalk {
public:
    // `globals`: the types of names that are declared elsewhere.
    GlslWalk(GlslTokens& shaderTokens, const std::map<std::string, GlslType>& globals, ImportFindings& importFindings);

    void run();

    // Functions that the rewritten text calls and does not define, see GlslHelpers.h.
    const std::set<std::string>& helpers() const { return wanted; }
    // Functions of the rewritten text, without arguments, that fill its global arrays before main begins.
    const std::vector<std::string>& starters() const { return fillers; }

private:
    struct Node {
        GlslType type{};
        std::size_t first = 0;  // places in `places`
        std::size_t last = 0;
        bool isNumber = false;  // a decimal whole number, at `number`
        std::size_t number = 0;
        bool isConstant = false;
        bool isName = false;
    };
    struct Symbol {
        GlslType type{};
        bool isConstant = false;
    };
    struct Signature {
        GlslType result{};
        std::vector<GlslType> parameters{};
    };
    struct Macro {
        bool isFunction = false;
        std::vector<std::string> parameters{};
        GlslTokens body{};
        std::size_t first = 0;     // of the body, in the text
        bool isOpen = false;       // being worked out: one that names itself has no type
        bool isRewritten = false;  // for the first of these types
        std::vector<std::pair<std::vector<GlslType>, Node>> known{};  // by the types of the arguments
    };
    // Of a text and of the walks through the bodies of its macros.
    struct Macros {
        GlslTokens& text;
        std::map<std::string, Macro> byName{};
    };
    struct Stop {};  // the text at hand is not understood
    // A level of nesting, for a scope. Throws Stop where there are more than any person writes.
    class Level {
    public:
        explicit Level(int& levels);
        ~Level() { --depth; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;

    private:
        int& depth;
    };

    // Places.
    const std::string& peek(std::size_t ahead = 0) const;
    GlslToken& token(std::size_t place) { return tokens[places[place]]; }
    bool isWord(std::size_t ahead = 0) const;
    bool take(std::string_view source);
    void expect(std::string_view source);
    int lineHere() const;
    void want(const std::string& helper, const Node& left, const Node& right);
    void pairElements(const Node& left, const std::string& mark, const Node& right, const std::string& separator);
    void clear(std::size_t firstPlace, std::size_t lastPlace);
    std::string textOf(const Node& node) const;
    void wrap(const Node& node, const std::string& before, const std::string& after);
    void recover();

    // Declarations.
    void readMacros();
    void global();
    void structure();
    void function(const GlslType& result, const std::string& name);
    void declarators(const GlslType& type, std::size_t constPlace, bool isGlobal, const std::string& arrayTail);
    void initializeArray(GlslType& type, std::size_t namePlace, std::size_t bracketPlace, bool isGlobal);
    std::size_t qualifiers();
    bool takeType(GlslType& type, std::string& arrayTail);
    bool isType(std::size_t ahead) const;
    bool isDeclaration() const;
    int arrayLength();

    // Statements.
    void block();
    void statement();
    void loop();
    void switchStatement();
    bool switchLabels(const std::string& choice, bool& isFirst, bool& hasDefault);
    bool switchBody();
    std::string lastWordOfBlock();

    // Expressions.
    Node expression();
    Node assignment();
    Node conditional();
    Node binary(int level);
    Node unary();
    Node postfix();
    Node primary();
    Node call(std::size_t namePlace);
    Node field(Node node);
    std::vector<Node> arguments();
    Node combine(Node left, std::size_t operatorPlace, Node right, int level);
    void callInstead(const std::string& helper, const Node& left, std::size_t operatorPlace, const Node& right);
    void makeFloat(Node& node);
    void convert(Node& node, const GlslType& wanted);
    const Signature* signatureFor(const std::string& name, const std::vector<Node>& values) const;
    Macro* findMacro(const std::string& name, bool isFunction) const;
    Node macroNode(Macro& macro, std::vector<Node>& values);
    Node workOut(Macro& macro, std::vector<GlslType>& types);
    const Symbol* find(const std::string& name) const;

    GlslTokens& tokens;
    ImportFindings& findings;
    std::vector<std::size_t> places;  // of the tokens that the walk sees
    std::size_t at = 0;
    int depth = 0;
    int switchCount = 0;
    GlslType result;  // of the function at hand
    std::vector<std::map<std::string, Symbol>> scopes;
    std::map<std::string, std::vector<Signature>> functions;
    std::map<std::string, std::vector<std::pair<std::string, GlslType>>> structures;
    std::shared_ptr<Macros> macros;
    std::vector<bool> breakable;  // what a break would leave: a loop, or else a switch
    std::set<std::string> wanted;
    std::vector<std::string> fillers;
};

}  // namespace quillon::cli
