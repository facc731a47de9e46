#include "script/Scripting.h"

#include <duktape.h>

#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

#include "entities/Context.h"
#include "platform/StackSpace.h"
#include "script/CallingLines.h"
#include "script/ErrorReading.h"
#include "script/HeapMemory.h"
#include "script/Natives.h"
#include "script/ScriptObserver.h"
#include "script/TimeLimit.h"

namespace quillon {

namespace {

Scripting::ErrorObserver errorObserver = nullptr;
std::vector<ScriptObserver*> observers;

// Reached only by a fault inside Duktape itself: every text runs protected.
[[noreturn]] void Fatal(void*, const char*) {
    std::abort();
}

void Bind(duk_context* ctx, std::span<const Native> natives) {
    for (const Native& native : natives) {
        duk_push_global_object(ctx);
        duk_push_c_function(ctx, native.call, native.arity());
        duk_put_prop_string(ctx, -2, native.name);
        duk_pop(ctx);
    }
}

// Fills a fresh heap. Runs protected, as any step may find no memory.
duk_ret_t Fill(duk_context* ctx, void*) {
    for (const auto natives : NativeTables()) Bind(ctx, natives);
    PrepareErrorReading(ctx);
    for (ScriptObserver* const observer : observers) observer->heapOpened(ctx);
    return 0;
}

}  // namespace

// The Context must outlive the heap, whose finalizers still use it at process exit: it is built first.
Scripting::Scripting() {
    quillon::Context::Instance();
}

Scripting::~Scripting() {
    // The process is ending, and its GL driver with it.
    AbandonGLObjects();
    Close();
}

void Scripting::Open() {
    const bool hasReserve = HeapMemory::TakeReserve();
    if (hasReserve)
        context = duk_create_heap(HeapMemory::Allocate, HeapMemory::Reallocate, HeapMemory::Release,
                                  TimeLimit::UserData(), Fatal);
    const bool isFilled = context && duk_safe_call(context, Fill, nullptr, 0, 0) == DUK_EXEC_SUCCESS;
    HeapMemory::CloseReserve();
    if (!isFilled) {
        Close();
        throw std::bad_alloc();
    }
    quillon::Context::Instance().Setup();
}

void Scripting::Close() {
    // The heap first: finalizers of script objects may call natives, which need the entities.
    if (context) {
        TimeLimit::Start(context);  // nobody hears of a finalizer that it ends
        duk_destroy_heap(context);
        TimeLimit::Stop();
    }
    context = nullptr;
    HeapMemory::ReturnReserve();
    pending = nullptr;
    quillon::Context::Instance().Clear();
}

void Scripting::Eval(const char* text) {
    if (!text || !context) return;
    evaluated = text;
    for (ScriptObserver* const observer : observers) observer->evaluationBegins(text);
    TimeLimit::Start(context);
    const bool hasFailed = duk_peval_string(context, text) != 0;
    if (hasFailed) report();
    duk_pop(context);
    duk_gc(context, 0);
    if (const std::optional<int> line = TimeLimit::Stop()) reportTimeout(*line);
    evaluated = nullptr;
    for (ScriptObserver* const observer : observers) observer->evaluationEnds(hasFailed);
    if (pending) std::rethrow_exception(std::exchange(pending, nullptr));
}

void Scripting::report() {
    if (!errorObserver || pending || TimeLimit::IsOver()) return;
    try {
        ThrownError error = ReadThrownError(context);
        errorObserver({evaluated, std::move(error.message), error.line});
    } catch (const std::bad_alloc&) {
        keepException();
    }
}

void Scripting::reportTimeout(int line) {
    if (!errorObserver) return;
    try {
        errorObserver({evaluated, "execution timeout", line, /*isTimeout=*/true});
    } catch (const std::bad_alloc&) {
        keepException();
    }
}

ScriptError Scripting::atCurrentLine(const std::string& message) const {
    if (!context || !evaluated) return {{}, message, 0};
    return {evaluated, message, CallingLine(context)};
}

void Scripting::SetErrorObserver(ErrorObserver observer) {
    errorObserver = observer;
}

void Scripting::AddObserver(ScriptObserver& observer) {
    observers.push_back(&observer);
}

void Scripting::RemoveObserver(ScriptObserver& observer) {
    std::erase(observers, &observer);
}

void Scripting::keepException() noexcept {
    if (!pending) pending = std::current_exception();
}

duk_ret_t RunNative(duk_context* ctx, duk_c_function function) {
    // An exception must not cross Duktape's frames: caught only after them, it would leave the heap in a state in
    // which every later script fails. A script error takes its way out instead.
    try {
        return function(ctx);
    } catch (...) {
        Scripting::instance().keepException();
    }
    return duk_error(ctx, DUK_ERR_ERROR, "a native function failed");
}

}  // namespace quillon
