#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "cli/diagnostics/Diagnostic.h"
#include "cli/import/CornerProbe.h"
#include "cli/import/EffectPlan.h"

namespace quillon::cli {

// What `new NAME --from FILE` is given.
struct ImportRequest {
    std::string name;  // of the effect
    std::filesystem::path from;
    std::filesystem::path common{};                          // text in front of all passes; of mainImage fragments
    std::map<std::string, std::filesystem::path> buffers{};  // by "a" to "d"
    std::vector<std::string> exposed{};                      // #define lines that become sliders
    std::vector<std::string> channels{};                     // "PASS:N=SOURCE"
};

// A file of the effect's folder.
struct ImportedFile {
    std::string name;
    std::string content;
};

// What has become of a shader file.
struct ImportedEffect {
    EffectPlan plan;
    std::vector<ImportedFile> files;  // none when the file is refused
    Diagnostics findings;             // errors exactly when it is refused
    CornerProbe corners{};            // to be tried out where there is an OpenGL
};

// Reads a shader file and makes an effect of it, in memory. Never throws for what a file holds; throws ToolError for a
// file that cannot be read or is too large.
ImportedEffect ImportShader(const ImportRequest& request);

// A name for a shader's file and its function: letters and digits of the effect's name, small first.
std::string ShaderName(const std::string& effect);

// A fault in a shader of the effect as a fault in the author's file; faults elsewhere stay as they are. `path` of the
// fault ends in the shader's file name.
Diagnostic InAuthorsFile(const Diagnostic& fault, const EffectPlan& plan);

}  // namespace quillon::cli
