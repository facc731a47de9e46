#include <fmt/format.h>

#include <algorithm>
#include <map>

#include "cli/check/shader/ShaderChecks.h"
#include "gpu/FragmentRewriting.h"

namespace quillon::cli {

namespace {

// The word that the engine takes for the program's function.
const SourceToken* TakenForMain(const ShaderSource& source) {
    const std::size_t hit = tokenFinder(source.text, "main", TokenMode::definition, 0);
    const auto found = std::ranges::find(source.tokens(), hit, &SourceToken::position);
    return found != source.tokens().end() ? &*found : nullptr;
}

void CheckMain(const ShaderSource& source, const SourceToken& main, ShaderFindings& findings) {
    if (main.isRenamed()) return;
    const std::size_t hit = tokenFinder(source.text, "main", TokenMode::definition, 0);
    if (hit == std::string::npos) {
        findings.add("shader/main-not-wrapped", main,
                     "Quillon does not find this main(), so the channels of its result come out in the host's order");
    } else {
        const bool isInCode = TakenForMain(source) != nullptr;
        findings.addAt("shader/wrong-main", hit,
                       isInCode
                           ? "Quillon takes this main() for the program's function, and the preprocessor leaves it out"
                           : "Quillon takes this word for the program's function",
                       isInCode ? "write one main() and put the choices inside of it"
                                : "write it in another way, such as 'main', where a bracket follows it in a comment");
    }
}

// A function of the text, by its name; functions of one name with other arguments count as one.
struct Function {
    std::size_t declared = std::string::npos;  // index of its first name in code()
    bool hasBody = false;
    bool isCalled = false;
};

}  // namespace

void CheckFunctions(const ShaderSource& source, ShaderFindings& findings) {
    const auto& code = source.code();
    const SourceToken* mainWord = nullptr;
    std::map<std::string, Function> functions;
    bool hasMain = false;
    int depth = 0;
    for (std::size_t i = 0; i < code.size(); ++i) {
        if (code[i].text == "{") ++depth;
        if (code[i].text == "}") --depth;
        if (!code[i].isWord() || source.codeText(i + 1) != "(") continue;
        const bool hasType = i > 0 && code[i - 1].isWord();
        if (code[i].text == "main" && hasType && !mainWord) mainWord = &code[i];
        if (code[i].text == "main" && hasType) {
            if (!hasMain) CheckMain(source, code[i], findings);
            hasMain = true;
        }
        const bool isDeclaration = depth == 0 && hasType;
        Function& function = functions[code[i].text];
        if (!isDeclaration) {
            function.isCalled = true;
            continue;
        }
        const std::string& next = source.codeText(source.closing(i + 1) + 1);
        if (next == "{") function.hasBody = true;
        if (function.declared == std::string::npos) function.declared = i;
    }
    if (!source.isCertain() || depth != 0) return;
    for (const auto& [name, function] : functions) {
        if (function.isCalled && function.declared != std::string::npos && !function.hasBody)
            findings.add("shader/undefined-function", code[function.declared],
                         fmt::format("{}() is declared and called, and has no body", name));
    }
    const auto isInMacro = [](const SourceToken& token) { return token.isDirective && token.text == "main"; };
    if (!hasMain && std::ranges::none_of(source.tokens(), isInMacro))
        findings.addWithoutPlace("shader/no-main", "no main(); every shader needs one");
    // Macros may hold it.
    const auto isResult = [](const SourceToken& token) {
        return HoldsName("gl_FragColor gl_FragData discard", token.text);
    };
    if (mainWord && std::ranges::none_of(source.tokens(), isResult))
        findings.add("shader/no-result", *mainWord, "main() never gives the pixel a color");
}

}  // namespace quillon::cli
