#include "cli/PackedModule.h"

#include <fmt/format.h>
#include <stdlib.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include "cli/TemplateModule.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

host::EffectModule Load(const fs::path& module, const char* remedy) {
    try {
        return host::EffectModule(module);
    } catch (const std::runtime_error& error) {
        throw Fault(fmt::format("{}; {}", error.what(), remedy));
    }
}

}  // namespace

PackedModule::PackedModule(const EffectSource& source) {
    if (source.isModule) {
        loaded = Load(source.path, "give a module that quillon pack has made on this system");
        return;
    }
    std::string name = (fs::temp_directory_path() / "quillon-XXXXXX").string();
    if (!mkdtemp(name.data())) {
        throw Fault(fmt::format("{}: cannot be made: {}; name another folder in TMPDIR", name, std::strerror(errno)));
    }
    folder = name;
    try {
        const fs::path module = folder / "effect.so";
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
