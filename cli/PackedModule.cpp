#include "cli/PackedModule.h"

#include <dlfcn.h>
#include <fmt/format.h>
#include <stdlib.h>

#include <cerrno>
#include <cstring>
#include <system_error>

#include "packer/Archive.h"
#include "packer/ModuleWriter.h"
#include "packer/PackageError.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

fs::path TemplateModule() {
    std::error_code ignored;
    const fs::path program = fs::read_symlink("/proc/self/exe", ignored);
    const fs::path path = program.parent_path().parent_path() / "lib" / "carrier.so";
    if (!fs::exists(path, ignored)) {
        throw Fault(
            fmt::format("{}: the tool's template module is missing; build it again, and keep bin and lib "
                        "beside each other",
                        path.string()));
    }
    return path;
}

}  // namespace

PackedModule::PackedModule(const EffectSource& source) {
    const fs::path templateModule = TemplateModule();
    std::vector<std::byte> package;
    try {
        package = Scramble(WriteArchive(source.files));
    } catch (const PackageError& error) {
        throw PackageFault(source.folder, error);
    }

    std::string name = (fs::temp_directory_path() / "quillon-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        throw Fault(fmt::format("{}: cannot be made: {}; name another folder in TMPDIR", name, std::strerror(errno)));
    }
    folder = name;
    try {
        const fs::path module = folder / "effect.so";
        WriteModule(module, templateModule, package);
        loaded = dlopen(module.c_str(), RTLD_NOW | RTLD_LOCAL);
        if (!loaded)
            throw Fault(fmt::format("{}; name a folder in TMPDIR from which modules can be loaded", dlerror()));
    } catch (const PackageError& error) {
        fs::remove_all(folder);
        throw Fault(fmt::format("{}; name another folder in TMPDIR", error.what()));
    } catch (...) {
        fs::remove_all(folder);
        throw;
    }
}

PackedModule::~PackedModule() {
    std::error_code ignored;
    fs::remove_all(folder, ignored);
}

}  // namespace quillon::cli
