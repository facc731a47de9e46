#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/diagnostics/Diagnostic.h"
#include "packer/PackageFile.h"

namespace quillon::cli {

// What `new --template` starts from: effects that the tool carries, those of share/templates.
struct EffectTemplate {
    std::string name;
    std::string about;  // what the effect does, one sentence
};
std::vector<EffectTemplate> EffectTemplates();  // by name
std::vector<std::string> TemplateNames();

// The files of a new effect with this name, made of a template. Throws WrongCommandLine for a template that does not
// exist.
std::vector<PackageFile> FilesOfTemplate(const std::string& name, const std::string& effect);

// The editors' files, which belong beside fx.js.
std::vector<PackageFile> FilesForEditors();

// Warnings of what hosts make of a name for an effect in this folder.
Diagnostics CheckEffectName(const std::filesystem::path& folder, const std::string& effect);

}  // namespace quillon::cli
