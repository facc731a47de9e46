#include "host/EffectModule.h"

#include <stdexcept>
#include <string>

#include "host/ModuleLoading.h"

namespace quillon::host {

EffectModule::EffectModule(const std::filesystem::path& file) {
    std::string reason;
    module = LoadModule(file, reason);
    if (!module) throw std::runtime_error(file.string() + ": cannot be loaded as an effect: " + reason);
    entryPoint = reinterpret_cast<EntryPoint>(FindInModule(module, "EntryPointFunc"));
    if (!entryPoint) throw std::runtime_error(file.string() + ": is no effect: it exports no EntryPointFunc");
}

}  // namespace quillon::host
