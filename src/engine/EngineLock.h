#pragma once

#include "engine/IPlugin.h"

namespace quillon {

// The engine's GL lock for the life of a scope, also when an exception ends it.
class EngineLock {
public:
    explicit EngineLock(IPlugin& plugin, bool isWanted = true) : engine(plugin), held(isWanted && plugin.lockGL()) {}
    ~EngineLock() {
        if (held) engine.unlockGL();
    }
    EngineLock(const EngineLock&) = delete;
    EngineLock& operator=(const EngineLock&) = delete;

    bool isHeld() const { return held; }  // false too when it was not wanted

private:
    IPlugin& engine;
    bool held;
};

// The mapped output of the selected instance for the life of a scope. Needs the GL lock.
class MappedResult {
public:
    explicit MappedResult(IPlugin& plugin) : engine(plugin), pixels(plugin.mapResult()) {}
    ~MappedResult() {
        if (pixels) engine.unmapResult(pixels);
    }
    MappedResult(const MappedResult&) = delete;
    MappedResult& operator=(const MappedResult&) = delete;

    const void* get() const { return pixels; }  // null: the frame counts as not rendered

private:
    IPlugin& engine;
    const void* pixels;
};

}  // namespace quillon
