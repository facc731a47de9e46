#include "cli/import/GlslWalk.h"

#include <fmt/format.h>

#include <algorithm>

namespace quillon::cli {

namespace {

const std::string kNothing;
constexpr int kDeepestNesting = 200;

}  // namespace

GlslWalk::GlslWalk(GlslTokens& shaderTokens, const std::map<std::string, GlslType>& globals,
                   ImportFindings& importFindings)
    : tokens(shaderTokens),
      findings(importFindings),
      scopes(1),
      macros(std::shared_ptr<Macros>(new Macros{shaderTokens})) {
    for (const auto& [name, type] : globals) scopes[0][name] = {type};
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].isSignificant() && !tokens[i].isDirective && !tokens[i].text.empty()) places.push_back(i);
    }
}

GlslWalk::Level::Level(int& levels) : depth(levels) {
    if (++depth <= kDeepestNesting) return;
    --depth;
    throw Stop();
}

void GlslWalk::run() {
    readMacros();
    while (at < places.size()) {
        const std::size_t start = at;
        try {
            global();
        } catch (const Stop&) {
            scopes.resize(1);
            breakable.clear();
            recover();
        }
        if (at == start) ++at;
    }
}

const std::string& GlslWalk::peek(std::size_t ahead) const {
    return at + ahead < places.size() ? tokens[places[at + ahead]].source : kNothing;
}

bool GlslWalk::isWord(std::size_t ahead) const {
    return at + ahead < places.size() && tokens[places[at + ahead]].kind == GlslToken::Kind::word;
}

bool GlslWalk::take(std::string_view source) {
    if (at >= places.size() || peek() != source) return false;
    ++at;
    return true;
}

void GlslWalk::expect(std::string_view source) {
    if (!take(source)) throw Stop();
}

int GlslWalk::lineHere() const {
    return places.empty() ? 1 : tokens[places[std::min(at, places.size() - 1)]].line;
}

void GlslWalk::clear(std::size_t firstPlace, std::size_t lastPlace) {
    for (std::size_t i = firstPlace; i <= lastPlace && i < places.size(); ++i) token(i).text.clear();
}

std::string GlslWalk::textOf(const Node& node) const {
    std::string text;
    for (std::size_t i = places[node.first]; i <= places[node.last]; ++i) text += tokens[i].text;
    return text;
}

void GlslWalk::wrap(const Node& node, const std::string& before, const std::string& after) {
    token(node.first).text.insert(0, before);
    token(node.last).text += after;
}

void GlslWalk::makeFloat(Node& node) {
    if (node.isNumber)
        token(node.number).text += ".0";
    else
        wrap(node, FloatOfSize(node.type.size).spelled() + "(", ")");
    node.isNumber = false;
    node.type = FloatOfSize(node.type.size);
}

void GlslWalk::convert(Node& node, const GlslType& wantedType) {
    if (wantedType.isFloat() && node.type.isInt()) makeFloat(node);
}

void GlslWalk::callInstead(const std::string& helper, const Node& left, std::size_t operatorPlace, const Node& right) {
    wrap(left, helper + "(", "");
    token(operatorPlace).text = ",";
    wrap(right, "", ")");
    want(helper, left, right);
}

void GlslWalk::want(const std::string& helper, const Node& left, const Node& right) {
    wanted.insert(helper);
    const auto isOne = [](const GlslType& type) { return type.isKnown() && type.size == 1; };
    if (!isOne(left.type) || !isOne(right.type)) wanted.insert(helper + "OfVectors");
}

// Elements of two arrays, each pair with the mark between, as one expression.
void GlslWalk::pairElements(const Node& left, const std::string& mark, const Node& right,
                            const std::string& separator) {
    const std::string one = textOf(left), other = textOf(right);
    std::string text;
    for (int i = 0; i < left.type.length; ++i)
        text += fmt::format("{}{}[{}] {} {}[{}]", i > 0 ? separator : "", one, i, mark, other, i);
    clear(left.first, right.last);
    token(left.first).text = "(" + text + ")";
}

const GlslWalk::Symbol* GlslWalk::find(const std::string& name) const {
    for (auto scope = scopes.rbegin(); scope != scopes.rend(); ++scope) {
        if (const auto found = scope->find(name); found != scope->end()) return &found->second;
    }
    return nullptr;
}

// Goes to the end of the statement that is not understood, or in front of the bracket that ends its block.
void GlslWalk::recover() {
    int level = 0;
    while (at < places.size()) {
        const std::string& mark = peek();
        if (mark == "{") ++level;
        if (mark == "}" && --level < 0) return;
        ++at;
        if (level == 0 && (mark == ";" || mark == "}")) return;
    }
}

}  // namespace quillon::cli
