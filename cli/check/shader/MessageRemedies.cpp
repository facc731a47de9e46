#include "cli/check/shader/MessageRemedies.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "cli/check/shader/ShaderChecks.h"
#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

namespace {

// Words that a message holds, in the forms of several drivers. Both count where there are two.
struct Remedy {
    std::string_view part;
    std::string_view otherPart;
    const char* remedy;
};
constexpr Remedy kRemedies[] = {
    {"read-only", "", "copy it to a variable: a uniform keeps its value through the pass"},
    {"l-value required", "", "copy it to a variable: uniforms and constants keep their values"},
    {"Redefinition of macro QUILLON", "", "Quillon defines it as 1; use another name"},
    {"Redefinition of macro SWIZZLE", "", "Quillon defines it as gbar; use another name"},
    {"must be a constant expression", "", "leave out const, or use constants only"},
    {"static recursion", "", "use a loop: functions cannot call themselves"},
    {"gl_FragData", "gl_FragColor", "write gl_FragColor only"},
    {"too few components", "", "give as many numbers as the vector has, or a single one"},
    {"must be scalar boolean", "", "compare, as in x > 0.0"},
    {"boolean expression expected", "", "compare, as in x > 0.0"},
    {"image/sampler variables", "", "name the uniform itself at each read"},
    {"Unterminated #if", "", "end it with #endif"},
};

// Messages about a whole number in a place where the dialect wants a float.
constexpr Remedy kOfNumbers[] = {
    {"type int ", "type float", nullptr},      {"could not implicitly convert", "", nullptr},
    {"must have matching types", "", nullptr}, {"no matching function for call to", "int", nullptr},
    {"wrong type int", "float", nullptr},      {"implicit cast from \"int\"", "float", nullptr},
    {"cannot convert from", "int", nullptr},   {"no matching overloaded function", "", nullptr},
    {"wrong operand types", "int", nullptr},
};

// Parts of messages about an expression that holds another fault.
constexpr std::string_view kFollowUps[] = {
    "type mismatch",    "type error",
    "must be numeric",  "non-numeric data type",
    "convert error to", "must be scalar boolean",
    "ERROR_TOK",        "non-lvalue",
    "(error",           "error)",
    "error, ",
};

const Remedy* FindRemedy(std::span<const Remedy> table, std::string_view text) {
    const auto found = std::ranges::find_if(table, [&](const Remedy& row) {
        return text.find(row.part) != std::string_view::npos && text.find(row.otherPart) != std::string_view::npos;
    });
    return found != table.end() ? &*found : nullptr;
}

// The first whole number of the statement from this place on that is no index and no part of whole numbers; null
// without one.
const SourceToken* WholeNumberAfter(const ShaderSource& source, TextPlace place) {
    const auto& code = source.code();
    auto i = static_cast<std::size_t>(
        std::ranges::lower_bound(code, source.positionOf(place), {}, &SourceToken::position) - code.begin());
    for (; i < code.size() && !HoldsName("; {", code[i].text); ++i) {
        const bool isWhole = HoldsName("int ivec2 ivec3 ivec4 for", code[i].text) && source.codeText(i + 1) == "(";
        if (isWhole) i = source.closing(i + 1);
        if (i < code.size() && code[i].text == "[") i = source.closing(i);
        if (i >= code.size()) break;
        if (code[i].kind == GlslToken::Kind::number &&
            std::ranges::all_of(code[i].text, [](char c) { return c >= '0' && c <= '9'; }))
            return &code[i];
    }
    return nullptr;
}

// Of a name that the driver does not know, the nearest one of the text and of the words that shaders use most.
std::string SuggestionFor(const std::string& message, const ShaderSource& source) {
    constexpr std::string_view kStarts[] = {"`", "no function with name '"};
    constexpr std::string_view kEnds[] = {"' undeclared", "'"};
    constexpr const char* kBuiltIns[] = {"texture2D", "gl_FragColor", "gl_FragCoord", "gl_TexCoord", "normalize",
                                         "length",    "distance",     "smoothstep",   "reflect",     "refract",
                                         "clamp",     "fract",        "floor"};
    for (std::size_t i = 0; i < std::size(kStarts); ++i) {
        if (!message.starts_with(kStarts[i]) || !message.ends_with(kEnds[i])) continue;
        const std::size_t begin = kStarts[i].size();
        const std::string name = message.substr(begin, message.size() - begin - kEnds[i].size());
        std::vector<std::string> known(std::begin(kBuiltIns), std::end(kBuiltIns));
        for (const SourceToken& token : source.tokens())
            if (token.isWord() && token.text != name && token.text.size() > 2) known.push_back(token.text);
        return DidYouMean(name, known);
    }
    return "";
}

}  // namespace

std::string RemedyOf(const PlacedMessage& message, const ShaderSource& source) {
    if (FindRemedy(kOfNumbers, message.text)) {
        const SourceToken* const number = message.place.column > 0 ? WholeNumberAfter(source, message.place) : nullptr;
        if (number) return fmt::format("write {0}.0 for {0}: a whole number does not become a float", number->text);
        return "write float(n) for a whole number n: it does not become a float";
    }
    const Remedy* const row = FindRemedy(kRemedies, message.text);
    return row ? row->remedy : SuggestionFor(message.text, source);
}

bool IsFollowUp(const PlacedMessage& message) {
    return std::ranges::any_of(kFollowUps,
                               [&](std::string_view part) { return message.text.find(part) != std::string::npos; });
}

}  // namespace quillon::cli
