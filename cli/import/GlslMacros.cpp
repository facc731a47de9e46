#include <algorithm>

#include "cli/import/GlslWalk.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kMostKnown = 8;  // kinds of calls of one macro whose types are worked out

}  // namespace

// #define lines.
void GlslWalk::readMacros() {
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isDirective || tokens[i].source != "define") continue;
        const std::size_t name = NextSignificant(tokens, i + 1);
        if (name >= tokens.size() || !tokens[name].isDirective) continue;
        Macro macro{.isFunction = name + 1 < tokens.size() && tokens[name + 1].source == "(", .first = name + 1};
        if (macro.isFunction) {
            const std::size_t close = ClosingBracket(tokens, name + 1);
            if (close >= tokens.size()) continue;
            for (std::size_t k = name + 2; k < close; ++k) {
                if (tokens[k].kind == GlslToken::Kind::word) macro.parameters.push_back(tokens[k].source);
            }
            macro.first = close + 1;
        }
        for (std::size_t k = macro.first; k < tokens.size() && tokens[k].isDirective; ++k) {
            macro.body.push_back(tokens[k]);
            macro.body.back().isDirective = false;
        }
        macros->byName[tokens[name].source] = macro;
    }
}

GlslWalk::Macro* GlslWalk::findMacro(const std::string& name, bool isFunction) const {
    const auto macro = macros->byName.find(name);
    return macro == macros->byName.end() || macro->second.isFunction != isFunction ? nullptr : &macro->second;
}

// What a call of the macro stands for. Whole numbers that its body takes for floats become floats in the call.
GlslWalk::Node GlslWalk::macroNode(Macro& macro, std::vector<Node>& values) {
    if (values.size() != macro.parameters.size() || macro.isOpen) return {};
    const bool isOfNumbers = !values.empty() && std::ranges::all_of(values, &Node::isNumber);
    const bool isKnown = std::ranges::all_of(values, [](const Node& value) { return value.type.isKnown(); });
    if (!isKnown || (isOfNumbers && !macro.isRewritten)) return {};
    std::vector<GlslType> types;
    for (const Node& value : values) types.push_back(value.type);
    if (macro.known.empty()) macro.known.emplace_back(types, workOut(macro, types));
    for (std::size_t i = 0; macro.isRewritten && i < values.size(); ++i) {
        convert(values[i], macro.known[0].first[i]);
        types[i] = values[i].type;
    }
    const auto same = std::ranges::find(macro.known, types, [](const auto& known) { return known.first; });
    if (same != macro.known.end()) return same->second;
    if (macro.known.size() >= kMostKnown) return {};
    const Node node = workOut(macro, types);
    macro.known.emplace_back(types, node);
    return node;
}

// The first time writes the body anew; parameters that it takes for floats are floats in `types` then.
GlslWalk::Node GlslWalk::workOut(Macro& macro, std::vector<GlslType>& types) {
    macro.isOpen = true;
    ImportFindings unheard("");
    GlslTokens body = macro.body;
    GlslWalk inner(body, {}, unheard);
    inner.depth = depth;
    inner.scopes = scopes;
    inner.scopes.emplace_back();
    for (std::size_t i = 0; i < types.size(); ++i) inner.scopes.back()[macro.parameters[i]] = {types[i]};
    inner.functions = functions;
    inner.structures = structures;
    inner.macros = macros;
    Node found;
    try {
        const Node node = inner.expression();
        if (inner.at == inner.places.size() && !inner.places.empty()) {
            // float(5 * 2) is another number than 1.0 / 5 * 2: whole numbers that are no single thing have no type.
            const bool isSingle = inner.places.size() == 1 || body[inner.places[0]].source == "(";
            if (isSingle || !node.type.isInt()) found = {.type = node.type, .isConstant = node.isConstant};
            if (!macro.isRewritten) {
                std::set<std::string> floats;
                for (std::size_t i = 0; i < body.size(); ++i)
                    if (body[i].text != macro.body[i].text) floats.insert(body[i].source);
                bool isChanged = false;
                for (std::size_t i = 0; i < types.size(); ++i) {
                    if (!types[i].isInt() || !floats.contains(macro.parameters[i])) continue;
                    types[i] = FloatOfSize(types[i].size);
                    isChanged = true;
                }
                if (isChanged) return workOut(macro, types);
                macro.isRewritten = true;
                for (std::size_t i = 0; i < body.size(); ++i) macros->text[macro.first + i].text = body[i].text;
            }
        }
    } catch (const Stop&) {  // no expression: it has no type
    }
    wanted.insert(inner.wanted.begin(), inner.wanted.end());
    macro.isOpen = false;
    return found;
}

}  // namespace quillon::cli
