#pragma once

#include <filesystem>

#include "hostapi/HostApi.h"

namespace quillon::host {

// What a module exports: a selector with the host's records, answered by an error code or 0.
using EntryPoint = PF_Err (*)(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output,
                              void* extra);

// An effect as its host holds it: where to call it, and which module it is. Copies name the same module.
class EffectModule {
public:
    // Loads a module's file. Throws std::runtime_error, with file and reason in words, when the file cannot be loaded
    // or exports no EntryPointFunc.
    explicit EffectModule(const std::filesystem::path& file);

    // An effect that is linked into this program. `moduleHandle` is the handle that the host gives it: null for the
    // program itself.
    explicit EffectModule(EntryPoint linkedEntry, void* moduleHandle = nullptr)
        : entryPoint(linkedEntry), module(moduleHandle) {}

    EntryPoint entry() const { return entryPoint; }  // never null

    // The loader's handle, by which an effect finds its own resources.
    void* handle() const { return module; }

private:
    EntryPoint entryPoint = nullptr;
    void* module = nullptr;
};

}  // namespace quillon::host
