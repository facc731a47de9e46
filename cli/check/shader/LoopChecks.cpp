#include <algorithm>

#include "cli/check/shader/ShaderChecks.h"

namespace quillon::cli {

namespace {

// Tokens of code() from `begin` up to `end`.
struct Part {
    std::size_t begin;
    std::size_t end;
};

// Whether all names in it are the loop's own variable, constants, macros or functions. Fields are no names.
bool IsConstant(const ShaderSource& source, Part part, const std::string& variable, const OwnNames& names) {
    for (std::size_t i = part.begin; i < part.end; ++i) {
        const SourceToken& token = source.code()[i];
        const bool isField = i > 0 && source.codeText(i - 1) == ".";
        const bool isCall = source.codeText(i + 1) == "(";
        if (!token.isWord() || isField || isCall || HoldsName("true false", token.text)) continue;
        if (token.text != variable && !names.constants.contains(token.text) && !names.macros.contains(token.text))
            return false;
    }
    return part.begin < part.end;
}

std::size_t FindMark(const ShaderSource& source, Part part, std::string_view mark) {
    for (std::size_t i = part.begin; i < part.end; ++i) {
        const std::string& text = source.codeText(i);
        if (text == mark) return i;
        if (text == "(" || text == "[") i = std::min(source.closing(i), part.end);
    }
    return part.end;
}

// One side of "&&" that is constant ends the loop, whatever the others say.
bool HasConstantBound(const ShaderSource& source, Part condition, const std::string& variable, const OwnNames& names) {
    while (condition.begin < condition.end) {
        const std::size_t end = FindMark(source, condition, "&&");
        if (IsConstant(source, {condition.begin, end}, variable, names)) return true;
        condition.begin = end + 1;
    }
    return false;
}

}  // namespace

void CheckLoops(const ShaderSource& source, ShaderFindings& findings) {
    const OwnNames names(source);
    const auto& code = source.code();
    constexpr const char* kText = "some drivers refuse a loop whose end is not constant";
    for (std::size_t i = 0; i + 1 < code.size(); ++i) {
        // The one of a do statement has no block after it, which makes no difference here.
        if (code[i].text == "while" && code[i + 1].text == "(")
            findings.add("shader/loop-bound", code[i], kText, "write for (...) with a constant end");
        if (code[i].text != "for" || code[i + 1].text != "(") continue;
        const std::size_t close = source.closing(i + 1);
        if (close == code.size()) continue;
        const std::size_t first = FindMark(source, {i + 2, close}, ";");
        if (first == close) continue;
        const std::size_t second = FindMark(source, {first + 1, close}, ";");
        const std::size_t assignment = FindMark(source, {i + 2, first}, "=");
        const std::string& variable = source.codeText(assignment < first ? assignment - 1 : first);
        if (!HasConstantBound(source, {first + 1, second}, variable, names))
            findings.add("shader/loop-bound", code[i], kText);
    }
}

}  // namespace quillon::cli
