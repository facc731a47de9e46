#pragma once

struct duk_hthread;

namespace quillon {

// What the tool learns while scripts run. A module has no observers.
class ScriptObserver {
public:
    // A new heap has all of its functions and has run no script yet. It may be given more. It must not throw, and runs
    // protected: a script error is a jump to the caller, which then has no heap.
    virtual void heapOpened(duk_hthread*) {}
    // Around Scripting::Eval, the collection of garbage included. `hasFailed`: the text ended in a script error that it
    // did not catch.
    virtual void evaluationBegins(const char* /*text*/) {}
    virtual void evaluationEnds(bool /*hasFailed*/) {}

protected:
    ~ScriptObserver() = default;
};

}  // namespace quillon
