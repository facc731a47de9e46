#include "cli/effect/TemplateModule.h"

#include <fmt/format.h>

#include <string>
#include <system_error>

#include "cli/system/ModuleKind.h"
#include "cli/system/System.h"
#include "packer/Archive.h"
#include "packer/FileError.h"
#include "packer/ModuleWriter.h"
#include "packer/WholeFile.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

fs::path TemplateModule(const ModuleKind& kind, const char* name) {
    const fs::path path = ProgramFile().parent_path().parent_path() / "lib" / (std::string(name) + kind.ending);
    std::error_code ignored;
    if (!fs::exists(path, ignored)) {
        throw Fault(path.string(), fmt::format("the template of modules for {} is missing", kind.system),
                    "install Quillon anew, or take this file from its package or zip: lib is beside the tool's bin");
    }
    return path;
}

std::vector<std::byte> Package(const EffectSource& source) {
    try {
        return Scramble(WriteArchive(source.files));
    } catch (const FileError& error) {
        throw PackageFault(source.path, error);
    }
}

}  // namespace

std::optional<bool> IsOfTemplate(const fs::path& module, const char* templateName) {
    const ModuleKind* const kind = ModuleKindOf(module);
    if (!kind) return {};
    try {
        return IsMadeFrom(module, TemplateModule(*kind, templateName));
    } catch (const std::exception&) {  // no template, or one of the files is damaged
        return {};
    }
}

void WriteEffectModule(const fs::path& output, const EffectSource& source, const std::string& remedy,
                       std::span<const std::byte> description, const char* templateName) {
    const ModuleKind* const kind = ModuleKindOf(output);
    const fs::path templateModule = TemplateModule(kind ? *kind : kOwnModuleKind, templateName);
    const std::vector<std::byte> package = Package(source);
    try {
        WriteModule(output, templateModule, package, description);
    } catch (const FileError& error) {
        throw Fault(error.place, error.fault, error.remedy.empty() ? remedy : error.remedy);
    }
}

}  // namespace quillon::cli
