#include "cli/EffectSource.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>

#include "cli/SourceChecks.h"
#include "packer/PackageError.h"

namespace quillon::cli {

namespace {

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c; };
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [&](char a, char b) { return lower(a) == lower(b); });
}

struct RequiredFile {
    const char* name;
    Diagnostic::Kind kind;
    Diagnostics (*check)(const std::string& path, std::string_view content);
};

constexpr RequiredFile kRequiredFiles[] = {
    {"config.xml", Diagnostic::Kind::config, CheckConfig},
    {"fx.js", Diagnostic::Kind::script, CheckScriptEncoding},
};

}  // namespace

const PackageFile* EffectSource::find(std::string_view name) const {
    const auto found = std::find_if(files.begin(), files.end(),
                                    [&](const PackageFile& file) { return EqualIgnoringCase(file.name, name); });
    return found != files.end() ? &*found : nullptr;
}

std::string EffectSource::textOf(std::string_view name) const {
    const PackageFile* file = find(name);
    if (!file) return {};
    const std::string_view all(reinterpret_cast<const char*>(file->bytes.data()), file->bytes.size());
    return std::string(all.substr(0, all.find('\0')));
}

std::string EffectSource::pathOf(std::string_view name) const {
    const PackageFile* file = find(name);
    return (folder / (file ? std::string_view(file->name) : name)).string();
}

EffectSource ReadEffectSource(const std::filesystem::path& folder) {
    std::error_code ignored;
    if (!std::filesystem::exists(folder, ignored)) {
        throw Fault(
            fmt::format("{}: no such effect; give the folder that holds its fx.js and config.xml", folder.string()));
    }
    if (!std::filesystem::is_directory(folder, ignored)) {
        throw Fault(fmt::format("{}: is not a folder; give the folder that holds the effect's fx.js and config.xml",
                                folder.string()));
    }
    try {
        return {folder, ReadEffectFolder(folder)};
    } catch (const PackageError& error) {
        throw PackageFault(folder, error);
    }
}

// The words begin with the path of the folder or of a file in it, when there is one to name.
ToolError PackageFault(const std::filesystem::path& folder, const PackageError& error) {
    const std::string_view words = error.what();
    Diagnostic diagnostic{.path = folder.string(), .text = std::string(words), .kind = Diagnostic::Kind::package};
    const std::size_t pathEnd = words.find(": ");
    if (words.starts_with(diagnostic.path) && pathEnd != std::string_view::npos) {
        diagnostic.path = words.substr(0, pathEnd);
        diagnostic.text = words.substr(pathEnd + 2);
    }
    return EffectFault({diagnostic});
}

Diagnostics CheckSource(const EffectSource& source) {
    Diagnostics diagnostics;
    for (const RequiredFile& required : kRequiredFiles) {
        const std::string path = source.pathOf(required.name);
        const PackageFile* file = source.find(required.name);
        if (!file) {
            diagnostics.push_back(
                {.path = path, .text = "no such file; every effect needs one", .kind = required.kind});
            continue;
        }
        const auto found =
            required.check(path, {reinterpret_cast<const char*>(file->bytes.data()), file->bytes.size()});
        diagnostics.insert(diagnostics.end(), found.begin(), found.end());
    }
    return diagnostics;
}

int CountLines(std::string_view text) {
    const auto ends = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    return ends + (text.empty() || text.back() == '\n' ? 0 : 1);
}

}  // namespace quillon::cli
