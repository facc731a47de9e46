#include "cli/commands/Commands.h"

#include <algorithm>
#include <span>

#include "cli/commands/EffectTemplates.h"
#include "cli/commands/ImportRehearsal.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/effect/EffectSource.h"
#include "cli/import/Import.h"
#include "packer/FileError.h"
#include "packer/WholeFile.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

namespace {

std::vector<PackageFile> PackageFiles(const std::vector<ImportedFile>& files) {
    std::vector<PackageFile> packed;
    for (const ImportedFile& file : files) {
        const auto bytes = std::as_bytes(std::span(file.content));
        packed.push_back({file.name, {bytes.begin(), bytes.end()}});
    }
    std::ranges::sort(packed, {}, &PackageFile::name);
    return packed;
}

// The folder appears with all of its files, or not at all.
void WriteFolder(const std::filesystem::path& folder, const std::vector<PackageFile>& files) {
    try {
        TemporaryPath temporary(folder.parent_path(), TemporaryPath::Kind::folder);
        for (const PackageFile& file : files) WriteWholeFile(temporary.path() / file.name, file.bytes);
        for (const PackageFile& file : FilesForEditors()) WriteWholeFile(temporary.path() / file.name, file.bytes);
        if (const std::error_code error = temporary.moveTo(folder))
            throw Fault(folder.string(), "cannot be made: " + error.message());
    } catch (const std::filesystem::filesystem_error& error) {
        throw Fault(folder.string(), "cannot be made: " + error.code().message());
    } catch (const FileError& error) {
        const std::filesystem::path file = folder / std::filesystem::path(error.place).filename();
        throw Fault(file.string(), error.fault, error.remedy);
    }
}

// The files of an effect that is made of a shader file. Prints what is carried over in another form.
std::vector<PackageFile> Import(const NewOptions& options, const std::filesystem::path& folder) {
    ImportedEffect effect = ImportShader({.name = folder.filename().string(),
                                          .from = options.from,
                                          .common = options.common,
                                          .buffers = options.buffers,
                                          .exposed = options.exposed,
                                          .channels = options.channels});
    if (effect.files.empty()) throw EffectFault(effect.findings);
    EffectSource source{folder, PackageFiles(effect.files)};
    Diagnostics faults = RehearseImport(source, effect);
    const auto isError = [](const Diagnostic& finding) { return finding.severity == Diagnostic::Severity::error; };
    if (!faults.empty() || std::ranges::any_of(effect.findings, isError)) {
        faults.insert(faults.end(), effect.findings.begin(), effect.findings.end());
        throw EffectFault(faults);
    }
    PrintDiagnostics(effect.findings);
    return std::move(source.files);
}

}  // namespace

int RunNew(const NewOptions& options) {
    const std::filesystem::path folder =
        options.folder.filename().empty() ? options.folder.parent_path() : options.folder;
    const std::string name = folder.filename().string();
    if (name.empty() || name == "." || name == "..")
        throw WrongCommandLine(options.folder.string(), "no name for a folder");
    std::error_code ignored;
    if (std::filesystem::exists(folder, ignored))
        throw Fault(folder.string(), "is there already", "give another name, or remove it first");

    const bool isImport = !options.from.empty();
    WriteFolder(folder, isImport ? Import(options, folder) : FilesOfTemplate(options.templateName, name));
    PrintDiagnostics(CheckEffectName(folder, name));
    PrintResult(folder.string());
    return 0;
}

}  // namespace quillon::cli
