#include "script/Scripting.h"

#include <duktape.h>

#include <cstdlib>
#include <utility>

#include "entities/Context.h"
#include "platform/StackSpace.h"
#include "script/Natives.h"

namespace quillon {

namespace {

Scripting::ErrorObserver errorObserver = nullptr;

void* Allocate(void*, duk_size_t size) {
    return std::malloc(size);
}
void* Reallocate(void*, void* block, duk_size_t size) {
    return std::realloc(block, size);
}
void Release(void*, void* block) {
    std::free(block);
}

// Reached only by a fault inside Duktape itself: every text runs protected.
[[noreturn]] void Fatal(void*, const char*) {
    std::abort();
}

void Bind(duk_context* ctx, std::span<const Native> natives) {
    for (const Native& native : natives) {
        duk_push_global_object(ctx);
        duk_push_c_function(ctx, native.call, native.arity);
        duk_put_prop_string(ctx, -2, native.name);
        duk_pop(ctx);
    }
}

// In: an error. Out: its text and its line. Runs protected, since properties of an error may be script code.
duk_ret_t DescribeError(duk_context* ctx, void*) {
    duk_dup(ctx, -1);
    duk_safe_to_string(ctx, -1);
    if (duk_is_object(ctx, -2))
        duk_get_prop_string(ctx, -2, "lineNumber");
    else
        duk_push_int(ctx, 0);
    duk_to_int(ctx, -1);
    return 2;
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
    context = duk_create_heap(Allocate, Reallocate, Release, nullptr, Fatal);
    if (context) {
        Bind(context, ParameterNatives());
        Bind(context, RenderTargetNatives());
        Bind(context, ShaderNatives());
        Bind(context, TextureNatives());
        Bind(context, SurfaceNatives());
        Bind(context, HostNatives());
    }
    quillon::Context::Instance().Setup();
}

void Scripting::Close() {
    // The heap first: finalizers of script objects may call natives, which need the entities.
    if (context) duk_destroy_heap(context);
    context = nullptr;
    pending = nullptr;
    quillon::Context::Instance().Clear();
}

void Scripting::Eval(const char* text) {
    if (!text || !context) return;
    const bool failed = duk_peval_string(context, text) != 0;
    if (failed && errorObserver && !pending) Report(text);
    duk_pop(context);
    duk_gc(context, 0);
    if (pending) std::rethrow_exception(std::exchange(pending, nullptr));
}

void Scripting::Report(const char* text) {
    duk_dup(context, -1);
    duk_safe_call(context, DescribeError, nullptr, 1, 2);
    const char* message = duk_get_string(context, -2);
    const ScriptError error{text, message ? message : "an error that cannot be shown", duk_get_int(context, -1)};
    errorObserver(error);
    duk_pop_2(context);
}

void Scripting::SetErrorObserver(ErrorObserver observer) {
    errorObserver = observer;
}

void Scripting::KeepException() noexcept {
    if (!pending) pending = std::current_exception();
}

duk_ret_t RunNative(duk_context* ctx, duk_c_function function) {
    // An exception must not cross Duktape's frames: caught behind them alone it would leave the heap in a state in
    // which every later script fails. A script error takes its way out instead.
    try {
        return function(ctx);
    } catch (...) {
        Scripting::instance().KeepException();
    }
    return duk_error(ctx, DUK_ERR_ERROR, "a native function failed");
}

}  // namespace quillon
