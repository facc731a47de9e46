#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "cli/diagnostics/ToolError.h"
#include "packer/PackageFile.h"

namespace quillon {
struct FileError;
}

namespace quillon::cli {

// The files of an effect, from its author's folder or read back out of a module.
struct EffectSource {
    std::filesystem::path path;  // of the folder or the module, as the user names it
    std::vector<PackageFile> files;
    bool isModule = false;

    // The file that the engine finds by this name, which ignores ASCII case; null when it is missing.
    const PackageFile* find(std::string_view name) const;
    // Its text as the engine sees it, up to the first zero byte; empty when it is missing.
    std::string textOf(std::string_view name) const;
    // Its path, for messages; of a missing file the path where it should be. In a module it is "MODULE/FILE".
    std::string pathOf(std::string_view name) const;
};

// Reads a folder or a packed module. Throws a Fault when there is neither, and EffectFault for a folder that cannot
// become a package or lacks a file that every effect needs, and for a module whose package cannot be read.
EffectSource ReadEffectSource(const std::filesystem::path& path);

// EffectFault for what is wrong with the package of the effect at this path.
ToolError PackageFault(const std::filesystem::path& path, const FileError& error);

// Throws WrongCommandLine for an output anywhere inside the folder of the effect: it would become a part of the
// effect.
void RequireOutside(const std::filesystem::path& output, const std::filesystem::path& effect);

// What keeps the files from being an effect: no config.xml or no fx.js, XML that does not parse.
Diagnostics CheckPackage(const EffectSource& source);

// The same, and a script that is not UTF-8: all that can be said before the engine reads the files.
Diagnostics CheckSource(const EffectSource& source);

// ReadEffectSource, and EffectFault for what CheckSource finds.
EffectSource ReadCheckedSource(const std::filesystem::path& path);

// The number of lines of a text, with a last one that does not end in a line feed.
int CountLines(std::string_view text);

}  // namespace quillon::cli
