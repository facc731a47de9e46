#pragma once

#include <string>
#include <vector>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/GlslOutline.h"

namespace quillon::cli {

// A vertex stage that runs at the four corners of the picture, as part of the fragments' text. It becomes a function
// that each fragment calls for three corners; between them the varyings go straight.
struct VertexStage {
    GlslTokens tokens;  // the stage's text, with names that the fragments' text does not have
    std::vector<Varying> varyings;
    bool movesCorners = false;  // it writes gl_Position: the picture is drawn where that says
    std::string vertexMain;     // the stage's function
    std::string corner;         // the variable that holds the corner, 0 or 1 each way
    std::string place;          // the function that runs it for a fragment
};

// `names`: all words of the fragments' text. The stage's own declarations of varyings and its call of the format's
// set-up function go.
VertexStage ReadVertexStage(GlslTokens tokens, const std::set<std::string>& names);

// Calls the stage for the corners 00, 10 and 01 and, of four, 11, where the first digit is the way to the right, and
// keeps position and varyings of each in p00 and NAME_PART_00.
std::string CornerCalls(const VertexStage& stage, int corners);

// A varying, or one element of an array.
struct VaryingPart {
    std::string type;
    std::string name;  // "left", "steps[1]"
    std::string base;  // of its values at the corners: "left_0_"
};
std::vector<VaryingPart> PartsOf(const std::vector<Varying>& varyings);

// The function `stage.place`, which gives each varying its value. With moved corners it returns false where the picture
// does not reach, and leaves the fragment's place within it in `stage.corner`.
std::string PlaceFunction(const VertexStage& stage);

}  // namespace quillon::cli
