#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/GlslReads.h"
#include "cli/import/GlslTypes.h"
#include "cli/import/ImportFindings.h"

namespace quillon::cli {

// What a text may use that it does not say itself.
struct DialectOptions {
    std::map<std::string, GlslType> globals{};  // names that are declared elsewhere
    std::set<std::string> pictures{};           // samplers that the text may name
    std::set<std::string> own{};                // functions that the text, or one beside it, defines
};

// What the changes have found, for what is written around the text.
struct DialectResult {
    GlslReads reads;
    std::set<std::string> usedPictures;
    std::set<std::string> calls;        // names among which those of GlslHelpers.h are to be defined
    std::set<std::string> own;          // functions that the text defines
    std::vector<std::string> starters;  // functions to call before main

    // Another text of the same shader.
    void add(const DialectResult& other);
};

// Rewrites a text, whose questions of version are settled, into the engine's dialect, GLSL 1.10. Lines stay where they
// are. What has no form there is refused with its line and a remedy.
DialectResult Translate(GlslTokens& tokens, const DialectOptions& options, ImportFindings& findings);

}  // namespace quillon::cli
