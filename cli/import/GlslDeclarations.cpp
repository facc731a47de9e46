#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "cli/import/GlslWalk.h"

namespace quillon::cli {

namespace {

using Base = GlslType::Base;

constexpr auto kQualifiers =
    std::to_array<std::string_view>({"const", "uniform", "varying", "attribute", "in", "out", "inout", "invariant",
                                     "flat", "smooth", "centroid", "highp", "mediump", "lowp"});

bool IsQualifier(const std::string& word) {
    return std::ranges::find(kQualifiers, word) != kQualifiers.end();
}

}  // namespace

// The place of `const`, or the number of places.
std::size_t GlslWalk::qualifiers() {
    std::size_t constPlace = places.size();
    while (IsQualifier(peek())) {
        if (peek() == "const") constPlace = at;
        ++at;
    }
    return constPlace;
}

bool GlslWalk::isType(std::size_t ahead) const {
    const std::string& word = peek(ahead);
    if (TypeNamed(word) || structures.contains(word)) return true;
    const Macro* const macro = findMacro(word, false);
    if (!macro) return false;
    const std::size_t first = NextSignificant(macro->body, 0);
    return first < macro->body.size() && TypeNamed(macro->body[first].source) &&
           NextSignificant(macro->body, first + 1) == macro->body.size();
}

bool GlslWalk::isDeclaration() const {
    if (IsQualifier(peek())) return true;
    if (!isType(0)) return false;
    if (isWord(1)) return true;
    if (peek(1) != "[") return false;
    std::size_t ahead = 2;
    while (at + ahead < places.size() && peek(ahead) != "]") ++ahead;
    return isWord(ahead + 1);
}

// "float" or "float[3]"; the brackets move to the end of the name, where the old dialect wants them.
bool GlslWalk::takeType(GlslType& type, std::string& arrayTail) {
    if (!isType(0)) return false;
    const std::string word = peek();
    if (const auto named = TypeNamed(word))
        type = *named;
    else if (structures.contains(word))
        type = {Base::structure, 1, false, word};
    else
        type = *TypeNamed(macros->byName.at(word).body[NextSignificant(macros->byName.at(word).body, 0)].source);
    ++at;
    if (peek() != "[") return true;
    const std::size_t start = at;
    type.length = arrayLength();
    type.isArray = true;
    for (std::size_t i = start; i < at; ++i) arrayTail += token(i).text;
    clear(start, at - 1);
    return true;
}

// "[3]"; 0 where the number is not written there.
int GlslWalk::arrayLength() {
    expect("[");
    if (take("]")) return 0;
    const Node node = expression();
    expect("]");
    return node.isNumber && token(node.number).source.size() < 6 ? std::stoi(token(node.number).source) : 0;
}

void GlslWalk::global() {
    if (take(";")) return;
    if (peek() == "struct") return structure();
    const std::size_t start = at;
    const std::size_t constPlace = qualifiers();
    GlslType type;
    std::string arrayTail;
    if (!takeType(type, arrayTail)) {
        if (at == start) throw Stop();
        return recover();
    }
    if (isWord() && peek(1) == "(") {
        if (type.isArray) findings.refuse(lineHere(), "a function that returns an array; let it fill a global array");
        const std::string name = peek();
        ++at;
        return function(type, name);
    }
    declarators(type, constPlace, /*isGlobal=*/true, arrayTail);
}

void GlslWalk::structure() {
    expect("struct");
    if (!isWord()) throw Stop();
    const std::string name = peek();
    ++at;
    expect("{");
    auto& members = structures[name];
    while (peek() != "}") {
        qualifiers();
        GlslType type;
        std::string arrayTail;
        if (!takeType(type, arrayTail)) throw Stop();
        do {
            if (!isWord()) throw Stop();
            const std::string member = peek();
            token(at).text += arrayTail;
            ++at;
            GlslType memberType = type;
            if (peek() == "[") {
                memberType.length = arrayLength();
                memberType.isArray = true;
            }
            members.emplace_back(member, memberType);
        } while (take(","));
        expect(";");
    }
    expect("}");
    if (!take(";")) declarators({Base::structure, 1, false, name}, places.size(), scopes.size() == 1, "");
}

void GlslWalk::function(const GlslType& resultType, const std::string& name) {
    Signature signature{.result = resultType};
    std::vector<std::pair<std::string, GlslType>> parameters;
    expect("(");
    if (peek() == "void" && peek(1) == ")") ++at;
    while (peek() != ")") {
        bool isOut = false;
        for (std::size_t ahead = 0; IsQualifier(peek(ahead)); ++ahead)
            isOut = isOut || peek(ahead) == "out" || peek(ahead) == "inout";
        qualifiers();
        GlslType type;
        std::string arrayTail;
        if (!takeType(type, arrayTail)) throw Stop();
        std::string parameter;
        if (isWord()) {
            parameter = peek();
            token(at).text += arrayTail;
            ++at;
        }
        if (peek() == "[") {
            type.length = arrayLength();
            type.isArray = true;
        }
        if (isOut && type.isArray)
            findings.refuse(lineHere(), "an array as an out parameter; let the function fill a global array");
        signature.parameters.push_back(type);
        parameters.emplace_back(parameter, type);
        if (!take(",") && peek() != ")") throw Stop();
    }
    expect(")");
    auto& known = functions[name];
    const auto isSame = [&](const Signature& other) { return other.parameters == signature.parameters; };
    if (std::ranges::none_of(known, isSame)) known.push_back(signature);
    if (take(";")) return;
    result = resultType;
    scopes.emplace_back();
    for (const auto& [parameter, type] : parameters) scopes.back()[parameter] = {type};
    block();
    scopes.pop_back();
}

void GlslWalk::declarators(const GlslType& base, std::size_t constPlace, bool isGlobal, const std::string& arrayTail) {
    do {
        if (!isWord()) throw Stop();
        const std::size_t namePlace = at;
        const std::string name = peek();
        ++at;
        GlslType type = base;
        std::size_t bracketPlace = places.size();
        token(namePlace).text += arrayTail;
        if (peek() == "[") {
            bracketPlace = at;
            type.length = arrayLength();
            type.isArray = true;
        }
        bool isConstant = constPlace < places.size();
        if (type.isArray && peek() == "=") {
            initializeArray(type, namePlace, bracketPlace, isGlobal);
            isConstant = false;
        } else if (take("=")) {
            Node value = assignment();
            convert(value, type);
            isConstant = isConstant && value.isConstant;
        }
        if (!isConstant && constPlace < places.size()) token(constPlace).text.clear();
        scopes.back()[name] = {type, isConstant};
    } while (take(","));
    if (peek() != ";") throw Stop();
    // The semicolon of a global array went into the function that fills it.
    ++at;
}

// float a[2] = float[2](x, y); becomes float a[2]; a[0] = x; a[1] = y; and, of a global array, these are the body of a
// function that runs before main.
void GlslWalk::initializeArray(GlslType& type, std::size_t namePlace, std::size_t bracketPlace, bool isGlobal) {
    const std::string name = token(namePlace).source;
    const std::size_t equals = at;
    expect("=");
    GlslType element = type;
    element.isArray = false;
    element.length = 0;
    if (peek() != "{") {
        if (!isType(0)) throw Stop();
        ++at;
        if (peek() == "[") arrayLength();
        if (peek() != "(") throw Stop();
    }
    clear(equals, at);
    ++at;
    int count = 0;
    do {
        if (peek() == "}") break;  // a comma before the closing brace
        if (count > 0) token(at - 1).text = ";";
        Node value = assignment();
        convert(value, element);
        wrap(value, fmt::format("{}[{}] = ", name, count++), "");
    } while (take(","));
    if (peek() != ")" && peek() != "}") throw Stop();
    token(at).text.clear();
    ++at;
    if (peek() != ";") {
        findings.refuse(lineHere(), "an array with an initializer beside other names; declare it by itself");
        throw Stop();
    }
    if (bracketPlace < places.size()) clear(bracketPlace, equals - 1);
    token(namePlace).text = fmt::format("{}[{}]", name, count);
    type.length = count;
    if (isGlobal) {
        const std::string filler = "fill_" + name;
        token(equals).text = fmt::format("; void {}() {{", filler);
        token(at).text = "; }";
        fillers.push_back(filler);
    } else {
        token(equals).text = ";";
    }
}

}  // namespace quillon::cli
