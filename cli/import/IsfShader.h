#pragma once

#include <string>

#include "cli/import/CornerProbe.h"
#include "cli/import/ImportFindings.h"
#include "cli/import/IsfHeader.h"

namespace quillon::cli {

// The text of a vertex stage beside an ISF file, and what is found in it.
struct IsfVertexFile {
    std::string text{};  // empty: there is none
    ImportFindings* findings = nullptr;
};

// The fragment shader that draws all passes of the file, in the engine's dialect. What it cannot carry over goes into
// `findings`, and what is to be tried out of a vertex stage into `probe`.
PlannedShader WriteIsfShader(const IsfFile& file, const IsfVertexFile& vertex, const std::string& shaderName,
                             ImportFindings& findings, CornerProbe& probe);

}  // namespace quillon::cli
