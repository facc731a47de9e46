#pragma once

#include "cli/EffectSource.h"

namespace quillon::cli {

// The effect packed behind the tool's template module, under a temporary name, and loaded as a host would load it.
// Stays loaded to the end of the process; the file goes with the object.
class PackedModule {
public:
    // Throws EffectFault when the effect cannot be packed, and a Fault when the module cannot be made or loaded.
    explicit PackedModule(const EffectSource& source);
    ~PackedModule();
    PackedModule(const PackedModule&) = delete;
    PackedModule& operator=(const PackedModule&) = delete;

    // The system's handle of the module.
    void* handle() const { return loaded; }

private:
    std::filesystem::path folder;
    void* loaded = nullptr;
};

}  // namespace quillon::cli
