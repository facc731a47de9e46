#include "script/SourcePreparation.h"

#include <algorithm>
#include <string_view>

#include "script/Prelude.h"

namespace quillon {

namespace {

// An entry point that a program may leave out, and its default. Any mention of the name counts as having
// it, also one in a comment.
struct OptionalEntry {
    std::string_view name;
    std::string_view definition;
};

constexpr OptionalEntry kOptionalEntries[] = {
    {"preRender", "function preRender(w,h) {};"},
    {"updateUIFlags", "function updateUIFlags() {};"},
};

void ReplaceFirst(std::string& text, std::string_view word, std::string_view replacement) {
    const std::size_t hit = text.find(word);
    if (hit != std::string::npos) text.replace(hit, word.size(), replacement);
}

// A replacement and the text around it must not be able to form the word again.
void ReplaceAll(std::string& text, std::string_view word, std::string_view replacement) {
    std::string replaced;
    std::size_t copied = 0;
    for (std::size_t hit = text.find(word); hit != std::string::npos; hit = text.find(word, copied)) {
        replaced.append(text, copied, hit - copied).append(replacement);
        copied = hit + word.size();
    }
    replaced.append(text, copied);
    text = std::move(replaced);
}

}  // namespace

std::string PrepareScriptSource(const std::string& script) {
    std::string text = Prelude();
    text.append(script).append("\nsetup();\n");
    ReplaceFirst(text, "import Q;", " ");
    ReplaceAll(text, "Q.L.", "QL_");
    // After the call of setup(), and still in time for it: all functions of a text exist before its first line runs.
    for (const OptionalEntry& entry : kOptionalEntries) {
        if (text.find(entry.name) == std::string::npos) text.append(entry.definition);
    }
    return text;
}

std::size_t PreludeLineCount() {
    const std::string prelude = Prelude();
    return static_cast<std::size_t>(std::count(prelude.begin(), prelude.end(), '\n'));
}

}  // namespace quillon
