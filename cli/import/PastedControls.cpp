#include "cli/import/PastedControls.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "cli/import/BuiltIns.h"
#include "cli/import/GlslTypes.h"

namespace quillon::cli {

namespace {

using Kind = PlannedControl::Kind;

// What a comment says about a control.
struct Words {
    std::vector<double> numbers{};  // without a key
    std::optional<double> least{};
    std::optional<double> most{};
    std::optional<double> value{};
    std::string label{};
};

bool IsOneOf(const std::string& word, std::initializer_list<std::string_view> words) {
    return std::ranges::find(words, word) != words.end();
}

// `at`: the place after the type and the name.
Words ReadWords(const GlslTokens& tokens, std::size_t at) {
    Words words;
    std::string key;
    bool isNegative = false;
    for (; at < tokens.size(); ++at) {
        const GlslToken& token = tokens[at];
        if (token.source == "\"") {
            while (++at < tokens.size() && tokens[at].source != "\"") words.label += tokens[at].source;
        } else if (token.kind == GlslToken::Kind::word) {
            key = token.source;
        } else if (token.source == "-") {
            isNegative = true;
        } else if (token.kind == GlslToken::Kind::number) {
            const double number = std::strtod(token.source.c_str(), nullptr) * (isNegative ? -1 : 1);
            isNegative = false;
            if (IsOneOf(key, {"min", "least", "from"}))
                words.least = number;
            else if (IsOneOf(key, {"max", "most", "to"}))
                words.most = number;
            else if (IsOneOf(key, {"default", "def", "value", "init"}))
                words.value = number;
            else
                words.numbers.push_back(number);
            key.clear();
        }
    }
    return words;
}

// Numbers without a key: a range, or with a third the default between the two. `first`: the default comes first, as
// after an equals sign.
void SettleNumbers(Words& words, bool first) {
    if (first && !words.numbers.empty() && !words.value) {
        words.value = words.numbers[0];
        words.numbers.erase(words.numbers.begin());
    }
    std::ranges::sort(words.numbers);
    if (words.numbers.size() < 2) return;
    words.least = words.numbers.front();
    words.most = words.numbers.back();
    if (words.numbers.size() == 3 && !words.value) words.value = words.numbers[1];
}

class Declarer {
public:
    Declarer(PastedControls& pastedControls, ImportFindings& importFindings)
        : declared(pastedControls), findings(importFindings) {}

    void declare(const std::string& type, const std::string& name, Words words, int line) {
        // What the format gives is no control; texts for other viewers declare it.
        if (name == "iMouse" || name.starts_with("iChannel") || FindBuiltIn(name, ShaderFormat::pasted)) return;
        if (declared.uniforms.contains(name)) return;
        const std::string label = declared.labels.take(words.label.empty() ? name : words.label);
        if (type == "sampler2D") {
            declared.layers.push_back({.name = name, .label = label});
            return;
        }
        PlannedControl control{.name = name, .uniform = name, .label = label};
        if (type == "float" || type == "int") {
            control.value[0] = words.value.value_or(words.least.value_or(0));
            control.least[0] = words.least.value_or(std::min(0.0, control.value[0] * 2));
            control.most[0] = words.most.value_or(std::max(1.0, control.value[0] * 2));
            FitRange(control.least[0], control.most[0], control.value[0]);
            control.precision = type == "int" ? 0 : DecimalsFor(control.least[0], control.most[0]);
            if (type == "int") control.uniform = name + "Value";
        } else if (type == "bool") {
            control.kind = Kind::toggle;
            control.value[0] = words.value.value_or(words.numbers.empty() ? 0 : words.numbers[0]);
        } else if (type == "vec2") {
            control.kind = Kind::point;
            for (std::size_t i = 0; i < 2; ++i) {
                control.value[i] = words.value.value_or(0.5);
                control.least[i] = words.least.value_or(0);
                control.most[i] = words.most.value_or(1);
                FitRange(control.least[i], control.most[i], control.value[i]);
            }
        } else if (type == "vec4") {
            control.kind = Kind::color;
            for (std::size_t i = 0; i < 4; ++i) control.value[i] = i < words.numbers.size() ? words.numbers[i] : 1;
        } else {
            findings.refuse(line,
                            fmt::format("uniform {} {}: no control can feed it; use float, int, bool, vec2, vec4 or "
                                        "sampler2D",
                                        type, name));
            return;
        }
        declared.uniforms[control.uniform] = type == "int" ? "float" : type;
        declared.controls.push_back(control);
    }

private:
    PastedControls& declared;
    ImportFindings& findings;
};

// "//! float speed = 1.0 [0.0, 5.0]": the words after the type and the name.
bool ReadDeclaration(const GlslTokens& words, std::string& type, std::string& name, std::size_t& next) {
    std::size_t at = NextSignificant(words, 0);
    if (at < words.size() && words[at].source == "uniform") at = NextSignificant(words, at + 1);
    const std::size_t nameAt = NextSignificant(words, at + 1);
    if (nameAt >= words.size() || !TypeNamed(words[at].source) || words[nameAt].kind != GlslToken::Kind::word)
        return false;
    type = words[at].source;
    name = words[nameAt].source;
    next = nameAt + 1;
    return true;
}

bool BeginsWithEquals(const GlslTokens& words, std::size_t at) {
    const std::size_t first = NextSignificant(words, at);
    return first < words.size() && words[first].source == "=";
}

// The comment on the rest of the line, without its slashes.
std::string CommentBehind(const GlslTokens& tokens, std::size_t at) {
    while (at < tokens.size() && tokens[at].kind == GlslToken::Kind::blank && tokens[at].source != "\n") ++at;
    if (at >= tokens.size() || tokens[at].kind != GlslToken::Kind::comment) return "";
    std::string text = tokens[at].source.substr(2);
    if (text.ends_with("*/")) text.resize(text.size() - 2);
    if (text.starts_with("!")) text.erase(0, 1);
    return text;
}

}  // namespace

void TakePastedControls(GlslTokens& tokens, PastedControls& declared, ImportFindings& findings) {
    Declarer declarer(declared, findings);
    int depth = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const GlslToken& token = tokens[i];
        if (token.kind == GlslToken::Kind::comment && token.source.starts_with("//!")) {
            const GlslTokens words = ReadTokens(std::string_view(token.source).substr(3), token.line);
            std::string type;
            std::string name;
            std::size_t next = 0;
            if (!ReadDeclaration(words, type, name, next)) continue;
            Words said = ReadWords(words, next);
            SettleNumbers(said, BeginsWithEquals(words, next));
            declarer.declare(type, name, said, token.line);
        }
        if (token.source == "{") ++depth;
        if (token.source == "}") --depth;
        if (depth != 0 || token.isDirective || token.source != "uniform") continue;
        std::size_t end = i;
        while (end < tokens.size() && tokens[end].source != ";") ++end;
        const GlslTokens words(tokens.begin() + static_cast<std::ptrdiff_t>(i),
                               tokens.begin() + static_cast<std::ptrdiff_t>(end));
        std::string type;
        std::string name;
        std::size_t next = 0;
        if (!ReadDeclaration(words, type, name, next)) {
            findings.refuse(token.line,
                            "a uniform of a type that no control can feed; use float, int, bool, vec2 or vec4");
            continue;
        }
        const GlslTokens comment = ReadTokens(CommentBehind(tokens, end + 1), token.line);
        Words said = ReadWords(comment, 0);
        const Words initial = ReadWords(words, next);
        if (!said.value && !initial.numbers.empty()) said.value = initial.numbers[0];
        SettleNumbers(said, false);
        declarer.declare(type, name, said, token.line);
        for (std::size_t k = i; k <= end && k < tokens.size(); ++k) {
            if (tokens[k].source != "\n" && tokens[k].kind != GlslToken::Kind::comment) tokens[k].text.clear();
        }
        i = end;
    }
}

bool ExposeConstant(GlslTokens& tokens, const std::string& name, PastedControls& declared) {
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isDirective || tokens[i].source != "define") continue;
        const std::size_t nameAt = NextSignificant(tokens, i + 1);
        if (nameAt >= tokens.size() || tokens[nameAt].source != name) continue;
        std::size_t numberAt = NextSignificant(tokens, nameAt + 1);
        const bool isNegative = numberAt < tokens.size() && tokens[numberAt].source == "-";
        if (isNegative) numberAt = NextSignificant(tokens, numberAt + 1);
        if (numberAt >= tokens.size() || tokens[numberAt].kind != GlslToken::Kind::number) return false;
        const std::string number = tokens[numberAt].source;
        const bool isWhole = number.find_first_of(".eEfF") == std::string::npos;
        Words words{.value = std::strtod(number.c_str(), nullptr) * (isNegative ? -1 : 1)};
        ImportFindings unheard("");
        Declarer(declared, unheard).declare(isWhole ? "int" : "float", name, words, tokens[i].line);
        // The line names the control's uniform in place of the number.
        const PlannedControl& control = declared.controls.back();
        for (std::size_t k = nameAt + 1; k <= numberAt; ++k) tokens[k].text.clear();
        if (isWhole) {
            tokens[numberAt].text = fmt::format(" int(floor({} + 0.5))", control.uniform);
        } else {
            for (std::size_t k = i; k <= nameAt; ++k) tokens[k].text.clear();
            if (i > 0 && tokens[i - 1].source == "#") tokens[i - 1].text.clear();
        }
        return true;
    }
    return false;
}

}  // namespace quillon::cli
