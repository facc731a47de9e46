#include "cli/check/shader/Conditions.h"

#include <array>
#include <charconv>
#include <string_view>

namespace quillon::cli {

namespace {

constexpr std::size_t kMostWords = 1000;  // of a condition, also after macros were replaced; bounds the recursion too

using Value = std::optional<long>;

struct Operator {
    std::string_view mark;
    int rank;  // binds closer when higher
    Value (*apply)(long, long);
};

// Sums and products wrap as unsigned numbers do, so that no condition is undefined.
constexpr long Wrapped(unsigned long value) {
    return static_cast<long>(value);
}

constexpr auto kOperators = std::to_array<Operator>({
    {"||", 1, [](long a, long b) -> Value { return a || b; }},
    {"&&", 2, [](long a, long b) -> Value { return a && b; }},
    {"|", 3, [](long a, long b) -> Value { return a | b; }},
    {"^", 4, [](long a, long b) -> Value { return a ^ b; }},
    {"&", 5, [](long a, long b) -> Value { return a & b; }},
    {"==", 6, [](long a, long b) -> Value { return a == b; }},
    {"!=", 6, [](long a, long b) -> Value { return a != b; }},
    {"<", 7, [](long a, long b) -> Value { return a < b; }},
    {">", 7, [](long a, long b) -> Value { return a > b; }},
    {"<=", 7, [](long a, long b) -> Value { return a <= b; }},
    {">=", 7, [](long a, long b) -> Value { return a >= b; }},
    {"+", 8,
     [](long a, long b) -> Value { return Wrapped(static_cast<unsigned long>(a) + static_cast<unsigned long>(b)); }},
    {"-", 8,
     [](long a, long b) -> Value { return Wrapped(static_cast<unsigned long>(a) - static_cast<unsigned long>(b)); }},
    {"*", 9,
     [](long a, long b) -> Value { return Wrapped(static_cast<unsigned long>(a) * static_cast<unsigned long>(b)); }},
});

class Condition {
public:
    explicit Condition(const Words& condition) : words(condition) {}

    Value value() {
        const Value result = operation(1);
        return isSound && at == words.size() ? result : std::nullopt;
    }

private:
    std::string_view word() const { return at < words.size() ? std::string_view(words[at]) : std::string_view(); }

    Value operation(int rank) {
        Value left = operand();
        while (const Operator* found = operatorHere(rank)) {
            ++at;
            const Value right = operation(found->rank + 1);
            left = Combine(*found, left, right);
        }
        return left;
    }

    const Operator* operatorHere(int rank) const {
        for (const Operator& known : kOperators)
            if (known.mark == word() && known.rank >= rank) return &known;
        return nullptr;
    }

    // One side may settle a question whose other side is not known.
    static Value Combine(const Operator& operation, Value left, Value right) {
        if (left && right) return operation.apply(*left, *right);
        for (const Value& side : {left, right}) {
            if (side && operation.mark == "&&" && *side == 0) return 0;
            if (side && operation.mark == "||" && *side != 0) return 1;
        }
        return std::nullopt;
    }

    Value operand() {
        const std::string_view first = word();
        ++at;
        if (first == "!" || first == "-" || first == "+" || first == "~") {
            const Value value = operand();
            if (!value) return std::nullopt;
            if (first == "!") return *value == 0;
            if (first == "-") return Wrapped(0UL - static_cast<unsigned long>(*value));
            return first == "~" ? ~*value : *value;
        }
        if (first == "(") {
            const Value value = operation(1);
            isSound = isSound && word() == ")";
            ++at;
            return value;
        }
        if (first == "?") return std::nullopt;
        const bool isHex = first.starts_with("0x") || first.starts_with("0X");
        const std::string_view digits = first.substr(isHex ? 2 : 0);
        const int base = isHex ? 16 : first.starts_with('0') && first.size() > 1 ? 8 : 10;
        long number = 0;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
        if (error != std::errc{} || end != digits.data() + digits.size()) isSound = false;
        return number;
    }

    const Words& words;
    std::size_t at = 0;
    bool isSound = true;
};

}  // namespace

Macros::Macros()
    : macros{{"QUILLON", {false, {"1"}}}, {"SWIZZLE", {false, {"gbar"}}}, {"__VERSION__", {false, {"110"}}}},
      doubted{"__LINE__", "__FILE__"} {}

void Macros::define(const std::string& name, bool isFunction, Words body) {
    macros[name] = {isFunction, std::move(body)};
    doubted.erase(name);
}

void Macros::undefine(const std::string& name) {
    macros.erase(name);
    doubted.erase(name);
}

void Macros::doubt(const std::string& name) {
    doubted.insert(name);
}

std::optional<bool> Macros::isDefined(const std::string& name) const {
    if (name == "__LINE__" || name == "__FILE__") return true;
    if (doubted.contains(name)) return std::nullopt;
    if (macros.contains(name)) return true;
    if (name.starts_with("GL_") && name != "GL_ES") return std::nullopt;
    return false;
}

std::optional<long> Macros::valueOf(const Words& condition) const {
    Words settled;
    for (std::size_t i = 0; i < condition.size(); ++i) {
        if (condition[i] != "defined") {
            settled.push_back(condition[i]);
            continue;
        }
        const bool isInBrackets = i + 3 < condition.size() && condition[i + 1] == "(" && condition[i + 3] == ")";
        const std::size_t name = isInBrackets ? i + 2 : i + 1;
        if (name >= condition.size()) return std::nullopt;
        const std::optional<bool> answer = isDefined(condition[name]);
        settled.emplace_back(!answer ? "?" : *answer ? "1" : "0");
        i = isInBrackets ? i + 3 : i + 1;
    }
    Words words;
    std::set<std::string> open;
    if (!expand(settled, words, open) || words.empty()) return std::nullopt;
    return Condition(words).value();
}

bool Macros::expand(const Words& words, Words& result, std::set<std::string>& open) const {
    for (const std::string& word : words) {
        if (result.size() > kMostWords) return false;
        const bool isName = word[0] == '_' || (word[0] >= 'a' && word[0] <= 'z') || (word[0] >= 'A' && word[0] <= 'Z');
        if (!isName) {
            result.push_back(word);
            continue;
        }
        const auto found = macros.find(word);
        if (isDefined(word) == false || open.contains(word)) {
            result.emplace_back("0");
        } else if (found == macros.end() || doubted.contains(word) || found->second.isFunction) {
            result.emplace_back("?");
        } else {
            open.insert(word);
            const bool isWhole = expand(found->second.body, result, open);
            open.erase(word);
            if (!isWhole) return false;
        }
    }
    return true;
}

}  // namespace quillon::cli
