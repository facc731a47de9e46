#include "cli/commands/EffectTemplates.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/import/ConfigWriter.h"
#include "cli/system/CarriedFile.h"

namespace quillon::cli {

std::span<const CarriedFile> EditorFiles();
std::span<const CarriedFile> TemplateFiles();

namespace {

constexpr std::string_view kConfigName = "config.xml";

PackageFile FileOf(std::string_view name, std::string_view content) {
    const auto bytes = std::as_bytes(std::span(content));
    return {std::string(name), {bytes.begin(), bytes.end()}};
}

std::string AboutOf(std::string_view config) {
    constexpr std::string_view kStart = "<ABOUT>";
    const std::size_t start = config.find(kStart) + kStart.size();
    return std::string(config.substr(start, config.find("</ABOUT>", start) - start));
}

}  // namespace

std::vector<EffectTemplate> EffectTemplates() {
    std::vector<EffectTemplate> templates;
    for (const CarriedFile& file : TemplateFiles()) {
        const std::size_t slash = file.name.find('/');
        if (file.name.substr(slash + 1) == kConfigName)
            templates.push_back({std::string(file.name.substr(0, slash)), AboutOf(file.content)});
    }
    std::ranges::sort(templates, {}, &EffectTemplate::name);
    return templates;
}

std::vector<std::string> TemplateNames() {
    std::vector<std::string> names;
    for (const EffectTemplate& each : EffectTemplates()) names.push_back(each.name);
    return names;
}

std::vector<PackageFile> FilesOfTemplate(const std::string& name, const std::string& effect) {
    std::vector<PackageFile> files;
    for (const CarriedFile& file : TemplateFiles()) {
        if (!file.name.starts_with(name + "/")) continue;
        const std::string_view leaf = file.name.substr(name.size() + 1);
        std::string content(file.content);
        if (leaf == kConfigName) content += WriteIdentity(effect);
        files.push_back(FileOf(leaf, content));
    }
    if (files.empty()) {
        const std::vector<std::string> names = TemplateNames();
        const std::string nearest = DidYouMean(name, names);
        throw WrongCommandLine("--template " + name, "no such template",
                               nearest.empty() ? fmt::format("there are {}", fmt::join(names, ", ")) : nearest);
    }
    return files;
}

std::vector<PackageFile> FilesForEditors() {
    std::vector<PackageFile> files;
    for (const CarriedFile& file : EditorFiles()) files.push_back(FileOf(file.name, file.content));
    return files;
}

Diagnostics CheckEffectName(const std::filesystem::path& folder, const std::string& effect) {
    Diagnostics warnings;
    const auto warn = [&](std::string text, std::string remedy) {
        warnings.push_back({.path = (folder / kConfigName).generic_string(),
                            .severity = Diagnostic::Severity::warning,
                            .text = std::move(text),
                            .remedy = std::move(remedy),
                            .kind = Diagnostic::Kind::config});
    };
    const std::string shown = CutEffectName(effect);
    if (shown != effect)
        warn(fmt::format("hosts have room for 31 bytes of a name, and would show \"{}\"", shown), "shorten FXNAME");
    if (!HasPlainName(effect))
        warn("projects cannot find the effect by this name, which has no letter from a to z and no digit",
             "change MATCH_NAME to one that is yours before you ship it");
    return warnings;
}

}  // namespace quillon::cli
