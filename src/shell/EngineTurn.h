#pragma once

#include "engine/EngineLock.h"
#include "shell/SequenceData.h"

namespace quillon {

// Whether a turn needs the GL lock.
enum class GLUse { none, locked };

// A stretch of work with the engine on one instance, without a host call in it.
//
// From any callback a host can enter the effect again. Such a nested call may select another instance, upload another
// picture into a layer's texture that all instances share, bring values of another time to the same instance, or leave
// no GL context current. So every selector asks the host first, keeps the answers, and then works with the engine in a
// turn, which selects the instance anew. The GL lock is held in turns only.
class EngineTurn {
public:
    // Selects the instance of the block, or none where the block has no live one. With GLUse::locked it tries to take
    // the GL lock; hasGL() says whether that worked.
    explicit EngineTurn(PF_Handle sequenceData, GLUse use = GLUse::none);
    EngineTurn(const EngineTurn&) = delete;
    EngineTurn& operator=(const EngineTurn&) = delete;

    bool hasGL() const { return lock.isHeld(); }  // the GL lock is held, and stays held until the turn ends
    // The live instance's block; null without one.
    SequenceData* block() const { return live; }
    IPlugin& operator*() const { return engine; }
    IPlugin* operator->() const { return &engine; }

    // Gives the engine the composition's extent and pixel aspect from the block.
    void setComposition() const;

private:
    IPlugin& engine;
    const EngineLock lock;
    SequenceData* const live;
};

// Selects the instance of the block and does no more.
inline void SelectInstance(PF_Handle sequenceData) {
    const EngineTurn turn(sequenceData);
}

}  // namespace quillon
