#include "host/ModuleLoading.h"

#include <dlfcn.h>

namespace quillon::host {

void* LoadModule(const std::filesystem::path& file, std::string& reason) {
    // A bare name would be searched for in the system's library folders.
    void* module = dlopen(std::filesystem::absolute(file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        const char* text = dlerror();
        reason = text ? text : "no reason given";
    }
    return module;
}

void* FindInModule(void* module, const char* name) {
    return dlsym(module, name);
}

void UnloadModule(void* module) {
    dlclose(module);
}

}  // namespace quillon::host
