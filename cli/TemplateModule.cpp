#include "cli/TemplateModule.h"

#include <fmt/format.h>

#include <system_error>

#include "cli/System.h"
#include "packer/Archive.h"
#include "packer/ModuleWriter.h"
#include "packer/PackageError.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

fs::path TemplateModule() {
    std::error_code ignored;
    const fs::path path = ProgramFile().parent_path().parent_path() / "lib" / "quillon_module.so";
    if (!fs::exists(path, ignored)) {
        throw Fault(
            fmt::format("{}: the tool's template module is missing; build it again, and keep bin and lib "
                        "beside each other",
                        path.string()));
    }
    return path;
}

std::vector<std::byte> Package(const EffectSource& source) {
    try {
        return Scramble(WriteArchive(source.files));
    } catch (const PackageError& error) {
        throw PackageFault(source.path, error);
    }
}

}  // namespace

void WriteEffectModule(const fs::path& output, const EffectSource& source, const char* remedy) {
    const fs::path templateModule = TemplateModule();
    const std::vector<std::byte> package = Package(source);
    try {
        WriteModule(output, templateModule, package);
    } catch (const PackageError& error) {
        throw Fault(fmt::format("{}; {}", error.what(), remedy));
    }
}

}  // namespace quillon::cli
