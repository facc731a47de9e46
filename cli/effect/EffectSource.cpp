#include "cli/effect/EffectSource.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "cli/effect/SourceChecks.h"
#include "packer/EffectFolder.h"
#include "packer/FileError.h"
#include "packer/PackageReader.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    return InLowerCase(std::string(left)) == InLowerCase(std::string(right));
}

std::string_view ContentOf(const PackageFile& file) {
    return {reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size()};
}

// The files that every effect needs and these are not. `files` have names.
template <class Files>
Diagnostics FindMissingFiles(const std::filesystem::path& effect, const Files& files) {
    constexpr std::pair<const char*, const char*> kRequired[] = {{"config.xml", "config/missing-file"},
                                                                 {"fx.js", "package/missing-file"}};
    Diagnostics diagnostics;
    for (const auto& [name, rule] : kRequired) {
        const auto hasName = [required = name](const auto& file) { return EqualIgnoringCase(file.name, required); };
        if (std::ranges::any_of(files, hasName)) continue;
        diagnostics.push_back(
            Found(rule, (effect / name).generic_string(), 0, 0, "no such file", "every effect needs one"));
    }
    return diagnostics;
}

// The wrong folder, which may hold anything, is refused before its files are read.
EffectSource ReadFolder(const std::filesystem::path& path) {
    const std::vector<FolderEntry> entries = ListEffectFolder(path);
    ThrowIfAny(FindMissingFiles(path, entries));
    return {path, ReadEffectFiles(entries)};
}

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
    return (path / PathFromUtf8(file ? std::string_view(file->name) : name))
        .generic_string();  // one form for editors on every system
}

EffectSource ReadEffectSource(const std::filesystem::path& path) {
    std::error_code ignored;
    if (!std::filesystem::exists(path, ignored)) {
        throw Fault(path.string(), "no such effect",
                    "give the folder that holds its fx.js and config.xml, or a packed module");
    }
    try {
        if (std::filesystem::is_directory(path, ignored)) return ReadFolder(path);
        return {path, ReadPackage(path), /*isModule=*/true};
    } catch (const FileError& error) {
        throw PackageFault(path, error);
    }
}

ToolError PackageFault(const std::filesystem::path& path, const FileError& error) {
    const std::filesystem::path place = error.place.empty() ? path : PathFromUtf8(error.place);
    return EffectFault({Found("package/unreadable", place.generic_string(), 0, 0, error.fault, error.remedy)});
}

void RequireOutside(const std::filesystem::path& output, const std::filesystem::path& effect) {
    namespace fs = std::filesystem;
    std::error_code ignored;
    if (!fs::is_directory(effect, ignored)) return;
    fs::path place = fs::weakly_canonical(fs::absolute(output), ignored).parent_path();
    for (; !fs::equivalent(place, effect, ignored); place = place.parent_path()) {
        if (place == place.parent_path()) return;
    }
    throw WrongCommandLine(output.string(), "is in the effect's folder and would be packed the next time",
                           "choose another place with -o");
}

Diagnostics CheckPackage(const EffectSource& source) {
    Diagnostics diagnostics = FindMissingFiles(source.path, source.files);
    if (const PackageFile* config = source.find("config.xml")) {
        const Diagnostics found = CheckConfig(source.pathOf("config.xml"), ContentOf(*config));
        diagnostics.insert(diagnostics.end(), found.begin(), found.end());
    }
    return diagnostics;
}

Diagnostics CheckSource(const EffectSource& source) {
    Diagnostics diagnostics = CheckPackage(source);
    if (const PackageFile* script = source.find("fx.js")) {
        const Diagnostics found = CheckScriptEncoding(source.pathOf("fx.js"), ContentOf(*script));
        diagnostics.insert(diagnostics.end(), found.begin(), found.end());
    }
    return diagnostics;
}

EffectSource ReadCheckedSource(const std::filesystem::path& path) {
    EffectSource source = ReadEffectSource(path);
    ThrowIfAny(CheckSource(source));
    return source;
}

int CountLines(std::string_view text) {
    const auto ends = static_cast<int>(std::count(text.begin(), text.end(), '\n'));
    return ends + (text.empty() || text.back() == '\n' ? 0 : 1);
}

}  // namespace quillon::cli
