#include <algorithm>

#include "cli/check/shader/ShaderChecks.h"

namespace quillon::cli {

OwnNames::OwnNames(const ShaderSource& source) {
    const auto& tokens = source.tokens();
    for (std::size_t i = 0; i + 2 < tokens.size(); ++i)
        if (tokens[i].startsDirective && tokens[i + 1].text == "define") macros.insert(tokens[i + 2].text);

    const auto& code = source.code();
    int depth = 0;
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (code[i].text == "{") ++depth;
        if (code[i].text == "}") --depth;
        const bool isNamed = i > 0 && code[i].isWord() && code[i - 1].isWord();
        if (depth == 0 && isNamed && source.codeText(i + 1) == "(") functions.insert(code[i].text);
        if (code[i].text != "const") continue;
        // The names follow the type and each comma outside of brackets.
        int brackets = 0;
        bool isName = false;
        for (std::size_t k = i + 2; k < code.size() && code[k].text != ";" && brackets >= 0; ++k) {
            if (code[k].isWord() && (isName || k == i + 2)) constants.insert(code[k].text);
            if (HoldsName("( [", code[k].text)) ++brackets;
            if (HoldsName(") ]", code[k].text)) --brackets;
            isName = code[k].text == "," && brackets == 0;
        }
    }
}

bool HoldsName(std::string_view list, std::string_view word) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(' '), list.size());
        if (list.substr(0, end) == word) return true;
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return false;
}

}  // namespace quillon::cli
