#pragma once

#include <string>
#include <string_view>

#include "cli/check/shader/ShaderSource.h"
#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// All that the text of a fragment shader says about itself, without a driver: the same on every machine. `path` is for
// the findings, which are in the order of their places. Takes a time in proportion to the text.
Diagnostics CheckShaderText(const std::string& path, std::string_view text);
Diagnostics CheckShaderText(const std::string& path, const ShaderSource& source);

}  // namespace quillon::cli
