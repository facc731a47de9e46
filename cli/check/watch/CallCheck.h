#pragma once

#include "cli/check/watch/Entities.h"
#include "cli/check/watch/Findings.h"

namespace quillon {
class NativeCall;
}

namespace quillon::cli {

enum class Entry { setup, preRender, draw, updateUIFlags };

// What the checks of one run share.
struct WatchedRun {
    Findings findings;
    Entities entities;
    Entry entry = Entry::setup;  // that runs, or ran last
};

// One family of checks of what a script does. Calls come in the order of the script's; a script error ends a call
// without after() and an entry point with hasFailed.
class CallCheck {
public:
    explicit CallCheck(WatchedRun& watchedRun) : run(watchedRun) {}
    virtual ~CallCheck() = default;
    CallCheck(const CallCheck&) = delete;
    CallCheck& operator=(const CallCheck&) = delete;

    // An entry point begins and ends; setup() with the program around it.
    virtual void entryBegins() {}
    virtual void entryEnds(bool /*hasFailed*/) {}
    virtual void before(const NativeCall& /*call*/) {}
    virtual void after(const NativeCall& /*call*/) {}
    // Somebody wants what is known by now.
    virtual void finish() {}

protected:
    WatchedRun& run;
};

}  // namespace quillon::cli
