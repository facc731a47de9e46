#include "cli/effect/Leftovers.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <string_view>

#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "platform/File.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

struct Pattern {
    std::string_view beginning, ending;  // of a name in lower case
    const char* what;
};

constexpr const char* kBackup = "a backup that an editor left";
constexpr const char* kSystemFile = "a file that the system keeps for itself";
constexpr const char* kModule = "a module, not a part of an effect";
constexpr const char* kUnreadable = "a picture or movie that no effect can read";

constexpr Pattern kPatterns[] = {
    {"", "~", kBackup},
    {"#", "#", kBackup},
    {"", ".bak", kBackup},
    {"", ".orig", kBackup},
    {"", ".tmp", kBackup},
    {"", ".swp", kBackup},
    {"thumbs.db", "", kSystemFile},
    {"desktop.ini", "", kSystemFile},
    {"", ".so", kModule},
    {"", ".aex", kModule},
    {"", ".dll", kModule},
    {"", ".exr", kUnreadable},
    {"", ".argb", kUnreadable},
    {"", ".y4m", kUnreadable},
    {"", ".mov", kUnreadable},
    {"", ".mp4", kUnreadable},
};

// What the engine reads.
constexpr std::string_view kPictureEndings[] = {".png", ".jpg", ".jpeg", ".bmp", ".gif", ".psd", ".hdr", ".tga"};

constexpr std::string_view kShaderEnding = ".frag";

// Whether the script, in lower case, may ask for the picture of this name. A text of the script that ends as the name
// does, and is not the name of a file here, is a part from which the script puts names together.
bool MayAskFor(const std::string& script, const EffectSource& source, const std::string& name,
               std::string_view ending) {
    for (std::size_t at = script.find(ending); at != std::string::npos; at = script.find(ending, at + 1)) {
        const std::size_t start = script.find_last_of("'\"/\\\n", at);
        const std::size_t first = start == std::string::npos ? 0 : start + 1;
        const std::string asked = script.substr(first, at + ending.size() - first);
        if (asked == name || !source.find(asked)) return true;
    }
    return false;
}

bool IsRead(const std::string& name) {
    return name == "fx.js" || name == "config.xml" ||
           std::ranges::any_of(kPictureEndings, [&](std::string_view ending) { return name.ends_with(ending); });
}

// A script that puts a shader's name together has a part of it in quotes.
bool MayLoad(const std::string& script, const std::string& name) {
    const std::string shader = name.substr(0, name.size() - kShaderEnding.size());
    if (HoldsWord(script, shader)) return true;
    for (const char quote : {'\'', '"'})
        for (std::size_t length = 1; length < shader.size(); ++length)
            if (script.find(quote + shader.substr(0, length) + quote) != std::string::npos) return true;
    return false;
}

const char* WhatIsLeft(const EffectSource& source, const std::string& script, const std::string& name) {
    for (const auto& [beginning, ending, what] : kPatterns)
        if (name.starts_with(beginning) && name.ends_with(ending)) return what;
    for (const std::string_view ending : kPictureEndings)
        if (name.ends_with(ending) && !MayAskFor(script, source, name, ending))
            return "a picture that fx.js does not name";
    if (!name.ends_with(kShaderEnding) && !IsRead(name) && script.find(name) == std::string::npos)
        return "a file that no effect reads";
    if (name.ends_with(kShaderEnding) && !MayLoad(script, name)) return "a shader that fx.js does not name";
    return nullptr;
}

}  // namespace

Diagnostics CheckLeftovers(const EffectSource& source) {
    const std::string script = InLowerCase(source.textOf("fx.js"));
    Diagnostics warnings;
    for (const PackageFile& file : source.files) {
        const char* what = WhatIsLeft(source, script, InLowerCase(file.name));
        if (!what && !source.isModule && IsHiddenFile(source.path / PathFromUtf8(file.name))) what = "a hidden file";
        if (!what) continue;
        warnings.push_back(Found("package/leftover", source.pathOf(file.name), 0, 0, what));
    }
    return warnings;
}

}  // namespace quillon::cli
