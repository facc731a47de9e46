#include <fmt/format.h>

#include "cli/check/shader/ShaderChecks.h"

namespace quillon::cli {

void CheckDirectives(const ShaderSource& source, ShaderFindings& findings) {
    const auto& tokens = source.tokens();
    for (std::size_t i = 0; i + 1 < tokens.size(); ++i) {
        const SourceToken& start = tokens[i];
        if (!start.startsDirective || start.presence != SourceToken::Presence::kept || !tokens[i + 1].isDirective)
            continue;
        const std::string& word = tokens[i + 1].text;
        if (word == "version") {
            findings.add("shader/version-line", start,
                         "no #version line can be the first: Quillon puts lines in front of it");
        } else if (word == "include") {
            findings.add("shader/include-line", start, "shaders have no #include");
        } else if (word == "extension" && i + 2 < tokens.size() && tokens[i + 2].isDirective) {
            const std::string& name = tokens[i + 2].text;
            if (source.addedLines > 0)
                findings.add("shader/late-extension", start,
                             "an #extension line must come before all code, and Quillon puts its reading functions in "
                             "front of it");
            else
                findings.add("shader/extension-line", start, fmt::format("some drivers do not have {}", name));
        }
    }
}

}  // namespace quillon::cli
