#pragma once

#include <exception>
#include <string>

#include "platform/Singletons.h"

struct duk_hthread;

namespace quillon {

class ScriptObserver;

// A script error that the script did not catch, for the author of the effect.
struct ScriptError {
    std::string evaluated;   // the text whose evaluation failed
    std::string message;     // the error as text, such as "ReferenceError: identifier 'x' undefined"
    int line = 0;            // line of the prepared source where it was raised; 0 when not known
    bool isTimeout = false;  // the text ran longer than its TimeLimit, wherever it was then
};

// The one script heap of the process. Every effect instance shares it, its global object and its variables. No locks,
// and not re-entrant: calls come one at a time under the effect's entry mutex; the natives call GL, so the GL lock is
// held where the script is to draw.
class Scripting final : public ustl::dynamic_singleton<Scripting> {
public:
    virtual ~Scripting();

    // Makes the heap with the API's functions, and sets up the Context. The Scripting must be closed. Throws
    // std::bad_alloc, and stays closed, when there is no memory for the heap.
    void Open();
    // Ends the heap, if there is one, then clears the Context.
    void Close();

    // Runs a zero-terminated text and collects all garbage. Its result is thrown away, and so is a script error, after
    // the observer has seen it. Nothing for a null text or while closed. A C++ exception that left a native function
    // is thrown on from here, even when the script caught its stand-in.
    void Eval(const char* text);

    // Null while closed.
    duk_hthread* Context() const { return context; }

    // Called with every script error; null, the default, leaves the system silent. It must not throw. What it receives
    // was read without running the script, which may have thrown something that never ends when asked for its text.
    using ErrorObserver = void (*)(const ScriptError& error);
    static void SetErrorObserver(ErrorObserver observer);

    // From the next call on, until it is removed, which must come before its end. Called in the order of their
    // addition.
    static void AddObserver(ScriptObserver& observer);
    static void RemoveObserver(ScriptObserver& observer);

    // The message as an error at the place where the script is now. For an observer of FailFast, which the script has
    // brought the process to: no text and line 0 outside of an evaluation.
    ScriptError atCurrentLine(const std::string& message) const;

    // Keeps the exception that is being handled, for Eval to throw on. For the natives' common wrapper.
    // The first one wins.
    void keepException() noexcept;

private:
    friend class ustl::dynamic_singleton<Scripting>;
    Scripting();
    // Shows the observer the error on top of the value stack.
    void report();
    void reportTimeout(int line);

    duk_hthread* context = nullptr;
    const char* evaluated = nullptr;  // during Eval, the collection of garbage included
    std::exception_ptr pending;
};

}  // namespace quillon
