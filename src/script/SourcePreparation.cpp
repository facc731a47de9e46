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

// A meaning and the text around it must not be able to form the shorthand again.
void Expand(std::string& text, const Shorthand& shorthand) {
    std::string expanded;
    std::size_t copied = 0;
    for (std::size_t hit = text.find(shorthand.written); hit != std::string::npos;
         hit = shorthand.isOnce ? std::string::npos : text.find(shorthand.written, copied)) {
        expanded.append(text, copied, hit - copied).append(shorthand.meaning);
        copied = hit + shorthand.written.size();
    }
    expanded.append(text, copied);
    text = std::move(expanded);
}

}  // namespace

std::string PrepareScriptSource(const std::string& script) {
    std::string text = Prelude();
    text.append(script).append("\nsetup();\n");
    for (const Shorthand& shorthand : kShorthands) Expand(text, shorthand);
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
