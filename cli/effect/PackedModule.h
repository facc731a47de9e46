#pragma once

#include <optional>

#include "cli/effect/EffectSource.h"
#include "host/EffectModule.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

// An effect loaded as a host loads it: from the module that the user gave, or from one that its folder is packed into,
// under a temporary name. Stays loaded until the process ends when its file can be removed before, and otherwise while
// this object lives.
class PackedModule {
public:
    // Throws EffectFault when the effect cannot be packed, and a Fault when the module cannot be made or loaded.
    explicit PackedModule(const EffectSource& source);
    ~PackedModule();
    PackedModule(const PackedModule&) = delete;
    PackedModule& operator=(const PackedModule&) = delete;

    const host::EffectModule& effect() const { return *loaded; }

    // Of the temporary module, whose effect has been started: it reads its file no more. Where a loaded module's file
    // cannot be removed, the object's end does it.
    void removeFile();

private:
    std::optional<TemporaryFolder> folder;  // none when the user's own module is loaded
    std::optional<host::EffectModule> loaded;
};

}  // namespace quillon::cli
