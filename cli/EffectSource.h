#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Diagnostic.h"
#include "packer/EffectFolder.h"

namespace quillon {
struct PackageError;
}

namespace quillon::cli {

// The files of an effect as its author has them.
struct EffectSource {
    std::filesystem::path folder;  // as the user names it
    std::vector<PackageFile> files;

    // The file that the engine finds by this name, which ignores ASCII case; null when there is none.
    const PackageFile* find(std::string_view name) const;
    // Its text as the engine sees it, up to the first zero byte; empty when there is none.
    std::string textOf(std::string_view name) const;
    // Its path, for messages; of a missing file the path where it should be.
    std::string pathOf(std::string_view name) const;
};

// Throws a Fault when there is no such folder, and EffectFault for one that cannot become a package.
EffectSource ReadEffectSource(const std::filesystem::path& folder);

// Why the effect in this folder cannot become a package.
ToolError PackageFault(const std::filesystem::path& folder, const PackageError& error);

// What is wrong with config.xml and fx.js before the engine sees them: absent files, XML that does not parse, a
// script that is not UTF-8.
Diagnostics CheckSource(const EffectSource& source);

// Lines of a text; an unfinished last line counts.
int CountLines(std::string_view text);

}  // namespace quillon::cli
