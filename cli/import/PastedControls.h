#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/ControlNames.h"
#include "cli/import/EffectPlan.h"
#include "cli/import/ImportFindings.h"

namespace quillon::cli {

// The controls that pasted texts declare.
struct PastedControls {
    std::vector<PlannedControl> controls;
    std::vector<PlannedImage> layers;
    std::map<std::string, std::string> uniforms;  // GLSL types by uniform
    ControlLabels labels;
};

// Takes the uniform declarations of a text and its comments of the form
//     //! float speed = 1.0 [0.0, 5.0] "Speed"
// and makes controls of them. A comment after a declaration says default, range and label in the same way, or as
// min=0 max=5 default=1.
void TakePastedControls(GlslTokens& tokens, PastedControls& declared, ImportFindings& findings);

// Makes a control of the line `#define NAME number`. False when the text has none.
bool ExposeConstant(GlslTokens& tokens, const std::string& name, PastedControls& declared);

}  // namespace quillon::cli
