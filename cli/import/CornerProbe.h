#pragma once

#include <string>
#include <vector>

#include "cli/import/EffectPlan.h"
#include "cli/import/VertexStage.h"

namespace quillon::cli {

// A shader that tries a vertex stage out. An effect calls the stage for three corners and takes the fourth to follow
// from these. Whether it does shows when the stage runs for all four, with many values of what it is given: each pixel
// is one trial.
struct CornerProbe {
    std::string shader{};                 // the fragment text; empty: nothing to try
    std::vector<std::string> varyings{};  // by number
    std::string file{};                   // the vertex file
    int line = 0;                         // of its first gl_Position; 0 where it has none
};

// The sides of a trial's picture, in pixels. In each pixel red is 1 where the fourth corner's place does not follow,
// and green is 0, or one more than the number of a varying that does not.
inline constexpr int kProbeSide = 32;

// `head` is what is in front of the stage's text in the effect's shader: uniforms, a line each, and functions.
// `starters` are functions to call before the stage.
std::string WriteCornerProbe(const VertexStage& stage, const std::string& head,
                             const std::vector<std::string>& starters, const EffectPlan& plan);

}  // namespace quillon::cli
