#include "cli/import/ScriptWriter.h"

#include "cli/import/ScriptPart.h"

namespace quillon::cli {

std::string WriteScript(const EffectPlan& plan) {
    return WriteScriptSetup(plan) + WriteScriptDrawing(plan);
}

}  // namespace quillon::cli
