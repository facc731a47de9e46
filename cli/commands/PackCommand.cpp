#include "cli/commands/Commands.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <system_error>
#include <vector>

#include "cli/check/run/CheckEffect.h"
#include "cli/check/run/Silencing.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/effect/ConfigChecks.h"
#include "cli/effect/EffectDescription.h"
#include "cli/effect/EffectSource.h"
#include "cli/effect/Frei0rPlugin.h"
#include "cli/effect/Leftovers.h"
#include "cli/effect/TemplateModule.h"
#include "cli/system/ModuleKind.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

void CheckOutput(const PackOptions& options) {
    if (!ModuleKindOf(options.output)) {
        throw WrongCommandLine(options.output.string(), "modules end in .so for Linux and in .aex for Windows");
    }
    RequireOutside(options.output, options.folder);
}

// Hosts know a plug-in by its file's name, and have their own meaning for most other characters.
void CheckPluginName(const fs::path& output) {
    const std::string name = output.stem().string();
    const bool isIdentifier = std::ranges::all_of(name, [](char c) {
        return c == '_' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
    if (output.extension() != ".so" || !isIdentifier)
        throw WrongCommandLine(output.string(), "hosts know a plug-in by its file's name",
                               "make it of letters, digits and '_' and end it in .so");
}

Diagnostics FilesOnly(const EffectSource& source) {
    Diagnostics warnings = CheckIdentity(source);
    const Diagnostics leftovers = CheckLeftovers(source);
    warnings.insert(warnings.end(), leftovers.begin(), leftovers.end());
    return Silence(source, warnings);
}

// The warnings of a check of setup() and all texts. Throws EffectFault for its errors. A machine without OpenGL packs
// too, and says what it could not check.
Diagnostics Checked(const fs::path& folder) {
    CheckSettings settings;
    settings.effect = folder;
    settings.level = 2;
    try {
        const CheckedEffect checked = CheckEffect(settings, {{}, PrintWords});
        if (!checked.hasErrors()) return checked.findings;
        Diagnostics findings = checked.findings;
        findings.push_back({.path = folder.string(),
                            .text = "has errors and is not packed",
                            .remedy = "fix them, or pack it as it is with --no-check",
                            .kind = Diagnostic::Kind::tool});
        throw EffectFault(findings);
    } catch (const ToolError& error) {
        const bool isOfEffect = error.faults.front().kind != Diagnostic::Kind::tool;
        if (isOfEffect) throw;
        Diagnostic warning = error.faults.front();
        warning.severity = Diagnostic::Severity::warning;
        warning.text = "script and shaders are packed without a check: " + warning.text;
        Diagnostics warnings = FilesOnly(ReadEffectSource(folder));
        warnings.push_back(warning);
        return warnings;
    }
}

}  // namespace

int RunPack(const PackOptions& options) {
    CheckOutput(options);
    if (options.isForFrei0r) CheckPluginName(options.output);
    std::error_code ignored;
    if (fs::exists(options.folder, ignored) && !fs::is_directory(options.folder, ignored)) {
        throw Fault(options.folder.string(), "is not a folder",
                    "give the one that holds the effect's fx.js and config.xml");
    }
    const EffectSource source = ReadEffectSource(options.folder);
    ThrowIfAny(options.isForFrei0r ? CheckSource(source) : CheckPackage(source));
    Diagnostics warnings = options.isUnchecked ? FilesOnly(source) : Checked(options.folder);
    const char* templateName = kEffectTemplate;
    std::vector<std::byte> description;
    if (options.isForFrei0r) {
        templateName = kPluginTemplate;
        const Frei0rPlugin plugin = DescribePlugin(source);
        description = frei0r::WriteListing(plugin.listing);
        warnings.insert(warnings.end(), plugin.warnings.begin(), plugin.warnings.end());
    } else if (ModuleKindOf(options.output)->isDescribed) {
        description = DescribeEffect(source);
    }
    WriteEffectModule(options.output, source, "choose another place with -o", description, templateName);
    PrintDiagnostics(warnings);
    PrintResult(options.output.string());
    std::uint64_t bytes = 0;
    for (const PackageFile& file : source.files) {
        bytes += file.bytes.size();
        if (options.isListed) PrintResult(fmt::format("{:>10}  {}", file.bytes.size(), file.name));
    }
    PrintWords(fmt::format("quillon: {} files, {} bytes", source.files.size(), bytes));
    return 0;
}

}  // namespace quillon::cli
