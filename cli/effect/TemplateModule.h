#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <string>

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Names of the templates in lib, without their endings.
inline constexpr const char* kEffectTemplate = "quillon_module";
inline constexpr const char* kPluginTemplate = "quillon_frei0r";

// Writes the effect as a module for the system that the ending of its name means, see ModuleKind.h: a copy of the
// effect module without an effect, from lib beside the tool's bin, with the package inside, and the description, if one
// is given. The same files give the same bytes on every system. Throws EffectFault for files that cannot become a
// package, and a Fault, which ends with `remedy`, when the module cannot be made.
void WriteEffectModule(const std::filesystem::path& output, const EffectSource& source, const std::string& remedy,
                       std::span<const std::byte> description = {}, const char* templateName = kEffectTemplate);

// Whether a module was made from the template for its system that is in lib now; nothing when there is no such
// template.
std::optional<bool> IsOfTemplate(const std::filesystem::path& module, const char* templateName);

}  // namespace quillon::cli
