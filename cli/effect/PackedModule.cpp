#include "cli/effect/PackedModule.h"

#include <fmt/format.h>

#include <stdexcept>
#include <string>

#include "cli/effect/TemplateModule.h"
#include "cli/system/ModuleKind.h"
#include "cli/system/System.h"
#include "frei0r/Listing.h"
#include "host/ModuleLoading.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

host::EffectModule Load(const fs::path& module, const std::string& remedy) {
    try {
        return host::EffectModule(module);
    } catch (const std::runtime_error& error) {
        throw Fault("", error.what(), remedy);
    }
}

}  // namespace

PackedModule::PackedModule(const EffectSource& source) {
    if (source.isModule) {
        if (frei0r::ReadListingOf(source.path))
            throw Fault(source.path.string(), "is a frei0r plug-in, which ffmpeg, melt and other video tools load",
                        "give the effect's folder, or a module of quillon pack without --for; quillon info reads this");
        const ModuleKind* const kind = ModuleKindOf(source.path);
        loaded = Load(source.path, kind && kind != &kOwnModuleKind
                                       ? fmt::format("modules for {} run there only; give the effect's folder, or a "
                                                     "module that ends in {}",
                                                     kind->system, kOwnModuleKind.ending)
                                       : "give a module that quillon pack has made on this system");
        return;
    }
    try {
        folder.emplace();
    } catch (const fs::filesystem_error& error) {
        throw Fault("", "no folder for temporary files: " + error.code().message(),
                    fmt::format("name another in {}", kTemporaryVariable));
    }
    const std::string remedy = fmt::format("name another folder in {}", kTemporaryVariable);
    const fs::path module = folder->path() / fmt::format("effect{}", kOwnModuleKind.ending);
    WriteEffectModule(module, source, remedy);
    loaded = Load(module, remedy);
}

PackedModule::~PackedModule() {
    removeFile();
    if (folder) host::UnloadModule(loaded->handle());
}

void PackedModule::removeFile() {
    if (folder && folder->remove()) folder.reset();
}

}  // namespace quillon::cli
