#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// What an effect is by its files: "path", "kind", the texts and numbers that hosts know it by, "files" with their
// sizes; of a module its "system" and whether its "template" is this tool's; of a frei0r plug-in what hosts list of it,
// under "plugin". `source` has passed CheckSource. Throws EffectFault for a config.xml that makes no match name.
nlohmann::ordered_json DescribeFiles(const EffectSource& source);

// What the engine that is linked into the tool has made of the effect so far: "shaders" with their uniforms, each with
// its type and who feeds it, "targets" and "textures" with their sizes. A control feeds the uniforms of its name;
// `script` is the text of fx.js, which feeds those that it names in quotes.
nlohmann::ordered_json DescribeEngine(const std::string& script);

// A fragment shader as the graphics driver gets it.
std::string RewrittenShader(std::string_view fragment);

}  // namespace quillon::cli
