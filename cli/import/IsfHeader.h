#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "cli/import/EffectPlan.h"
#include "cli/import/ImportFindings.h"

namespace quillon::cli {

// An ISF file: a JSON header in its first comment that declares inputs and passes, then GLSL.
struct IsfFile {
    EffectPlan plan;                                // without shaders; its passes all use shader 0
    std::map<std::string, std::string> uniforms{};  // GLSL types of the inputs that are no images, by uniform
    std::map<std::string, std::string> renamed{};   // inputs whose name GLSL keeps for itself, and the uniform in place
    std::string before{};                           // comments in front of the header
    std::string body{};                             // what follows the header
    int bodyLine = 1;                               // where it begins
};

// Whether the text's first comment that holds an object comes before any code.
bool HasIsfHeader(std::string_view text);

// Reads header and body. What is wrong with the header goes into `findings`; pictures are looked up from `folder`.
IsfFile ReadIsf(std::string_view text, const std::filesystem::path& folder, const std::string& name,
                ImportFindings& findings);

}  // namespace quillon::cli
