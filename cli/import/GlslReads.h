#pragma once

#include <map>
#include <set>
#include <string>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/ImportFindings.h"

namespace quillon::cli {

// How a shader reads its pictures once it is rewritten.
struct GlslReads {
    std::string reader;                            // the function that all reads go through
    std::map<std::string, std::string> sizes{};    // of each picture: the uniform of its size in pixels
    std::map<std::string, std::string> aliases{};  // other names of pictures, and the pictures
    std::set<std::string> sized{};                 // pictures whose size the text asks for
    std::set<std::string> used{};                  // functions in front of the text that the reads call

    // The definitions of what is used. `place` is where IMG_THIS_PIXEL reads.
    std::string definitions(const std::string& place) const;
};

// Leads each read of the text, those in macros too, through one function: the engine turns channels round at a read
// that it recognizes, and does so at every read in this way. Pictures are the samplers that the text may name.
GlslReads RewriteReads(GlslTokens& tokens, const std::set<std::string>& pictures, const std::set<std::string>& own,
                       ImportFindings& findings);

}  // namespace quillon::cli
