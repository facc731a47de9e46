#pragma once

#include <string>
#include <vector>

#include "cli/glsl/GlslTokens.h"

namespace quillon::cli {

// A shader's text as it grows, and for each of its lines the line of the author's file that it comes from.
class ShaderText {
public:
    // Lines of ours; ends with a line end.
    void add(const std::string& ownLines);
    // Lines of the author's. A line end is added where they have none.
    // `isCommon`: they are of the text that several passes have in common, and count below 0.
    void add(const GlslTokens& tokens, bool isCommon = false);

    const std::string& text() const { return whole; }
    const std::vector<int>& origins() const { return lines; }

private:
    std::string whole;
    std::vector<int> lines;
};

}  // namespace quillon::cli
