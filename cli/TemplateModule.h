#pragma once

#include <filesystem>

#include "cli/EffectSource.h"

namespace quillon::cli {

// Writes the effect as a module: a copy of the effect module without an effect, which lies in lib beside the tool's
// bin, with the package inside. The same files give the same bytes. Throws EffectFault for files that cannot become a
// package, and a Fault, which ends with `remedy`, when the module cannot be made.
void WriteEffectModule(const std::filesystem::path& output, const EffectSource& source, const char* remedy);

}  // namespace quillon::cli
