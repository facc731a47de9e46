#pragma once

#include "cli/check/shader/ExplainShader.h"
#include "cli/check/shader/ShaderSource.h"

namespace quillon {
class Shader;
}

namespace quillon::cli {

// What the driver says of a shader that was built with this text. Needs the GL lock.
DriverVerdict AskDriver(const Shader& shader, const ShaderSource& source);

}  // namespace quillon::cli
