#pragma once

#include <string>

#include "cli/import/Import.h"

namespace quillon::cli {

// Whether a text is a fragment with mainImage, or a saved project of such fragments.
bool IsPasted(const std::string& text);

// Fills in plan and findings. Throws ToolError for a further file that cannot be read.
void ImportPasted(const ImportRequest& request, const std::string& text, ImportedEffect& effect);

}  // namespace quillon::cli
