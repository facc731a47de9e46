#include "cli/PackedModule.h"

#include <fmt/format.h>
#include <stdlib.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>
#include <system_error>

#include "cli/ModuleKind.h"
#include "cli/TemplateModule.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

host::EffectModule Load(const fs::path& module, const std::string& remedy) {
    try {
        return host::EffectModule(module);
    } catch (const std::runtime_error& error) {
        throw Fault(fmt::format("{}; {}", error.what(), remedy));
    }
}

}  // namespace

PackedModule::PackedModule(const EffectSource& source) {
    if (source.isModule) {
        const ModuleKind* const kind = ModuleKindOf(source.path);
        loaded = Load(source.path, kind && kind != &kOwnModuleKind
                                       ? fmt::format("modules for {} run there only; give the effect's folder, or a "
                                                     "module that ends in {}",
                                                     kind->system, kOwnModuleKind.ending)
                                       : "give a module that quillon pack has made on this system");
        return;
    }
    std::string name = (fs::temp_directory_path() / "quillon-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        throw Fault(fmt::format("{}: cannot be made: {}; name another folder in TMPDIR", name, std::strerror(errno)));
    }
    folder = name;
    try {
        const fs::path module = folder / (std::string("effect") + kOwnModuleKind.ending);
        WriteEffectModule(module, source, "name another folder in TMPDIR");
        loaded = Load(module, "name a folder in TMPDIR from which modules can be loaded");
    } catch (...) {
        fs::remove_all(folder);
        throw;
    }
}

PackedModule::~PackedModule() {
    removeFile();
}

void PackedModule::removeFile() {
    std::error_code ignored;
    if (!folder.empty()) fs::remove_all(folder, ignored);
    folder.clear();
}

}  // namespace quillon::cli
