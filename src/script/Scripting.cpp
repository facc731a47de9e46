#include "script/Scripting.h"

#include <duktape.h>

#include <cstdlib>
#include <new>
#include <utility>

#include "entities/Context.h"
#include "platform/StackSpace.h"
#include "script/ErrorReading.h"
#include "script/HeapMemory.h"
#include "script/Natives.h"

namespace quillon {

namespace {

Scripting::ErrorObserver errorObserver = nullptr;

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
    for (const auto natives : {ParameterNatives(), RenderTargetNatives(), ShaderNatives(), TextureNatives(),
                               SurfaceNatives(), HostNatives()})
        Bind(ctx, natives);
    PrepareErrorReading(ctx);
    return 0;
}

// Gives the line of the innermost function that is script and not native.
duk_ret_t FindLine(duk_context* ctx, void*) {
    for (duk_int_t level = -1;; --level) {
        duk_inspect_callstack_entry(ctx, level);
        if (!duk_is_object(ctx, -1)) break;
        duk_get_prop_string(ctx, -1, "lineNumber");
        if (duk_get_int(ctx, -1) > 0) return 1;
        duk_pop_2(ctx);
    }
    duk_push_int(ctx, 0);
    return 1;
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
        context = duk_create_heap(HeapMemory::Allocate, HeapMemory::Reallocate, HeapMemory::Release, nullptr, Fatal);
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
    if (context) duk_destroy_heap(context);
    context = nullptr;
    HeapMemory::ReturnReserve();
    pending = nullptr;
    quillon::Context::Instance().Clear();
}

void Scripting::Eval(const char* text) {
    if (!text || !context) return;
    evaluated = text;
    const bool failed = duk_peval_string(context, text) != 0;
    if (failed && errorObserver && !pending) report();
    duk_pop(context);
    duk_gc(context, 0);
    evaluated = nullptr;
    if (pending) std::rethrow_exception(std::exchange(pending, nullptr));
}

void Scripting::report() {
    try {
        ThrownError error = ReadThrownError(context);
        errorObserver({evaluated, std::move(error.message), error.line});
    } catch (const std::bad_alloc&) {
        keepException();
    }
}

ScriptError Scripting::atCurrentLine(const std::string& message) const {
    if (!context || !evaluated) return {{}, message, 0};
    duk_safe_call(context, FindLine, nullptr, 0, 1);
    const int line = duk_get_int(context, -1);
    duk_pop(context);
    return {evaluated, message, line};
}

void Scripting::SetErrorObserver(ErrorObserver observer) {
    errorObserver = observer;
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
