#include "script/ErrorReading.h"

#include <duktape.h>

#include "platform/StackSpace.h"

namespace quillon {

namespace {

// Where the heap's stash, which scripts cannot reach, keeps the getter of Error.prototype.lineNumber.
constexpr const char* kLineGetter = "lineGetter";

// Each reads something of the thrown value, which is on top.

duk_ret_t ReadProperty(duk_context* ctx, void* key) {
    duk_get_prop_string(ctx, -1, static_cast<const char*>(key));
    return 1;
}

duk_ret_t ReadLine(duk_context* ctx, void*) {
    duk_push_global_stash(ctx);
    duk_get_prop_string(ctx, -1, kLineGetter);
    duk_dup(ctx, -3);
    duk_call_method(ctx, 0);
    return 1;
}

// Of a value that is no object; a buffer or a symbol has no text but by a script.
duk_ret_t ReadText(duk_context* ctx, void*) {
    if (duk_is_symbol(ctx, -1) || duk_check_type(ctx, -1, DUK_TYPE_BUFFER)) return 0;
    duk_to_string(ctx, -1);
    return 1;
}

// Pushes the result, or whatever was thrown instead.
void Read(duk_context* ctx, duk_safe_call_function what, const char* key, int calls) {
    const CallLimit limit(1 + calls);  // the protected call counts
    duk_dup(ctx, -1);
    duk_safe_call(ctx, what, const_cast<char*>(key), 1, 1);
}

std::string TakeText(duk_context* ctx) {
    std::string text;
    if (duk_is_string(ctx, -1) && !duk_is_symbol(ctx, -1)) text = duk_get_string(ctx, -1);
    duk_pop(ctx);
    return text;
}

}  // namespace

void PrepareErrorReading(duk_context* ctx) {
    duk_push_global_stash(ctx);
    duk_get_global_string(ctx, "Error");
    duk_get_prop_string(ctx, -1, "prototype");
    duk_push_string(ctx, "lineNumber");
    duk_get_prop_desc(ctx, -2, 0);
    duk_get_prop_string(ctx, -1, "get");
    duk_put_prop_string(ctx, -5, kLineGetter);
    duk_pop_n(ctx, 4);
}

ThrownError ReadThrownError(duk_context* ctx) {
    // Finalizers are script too. After a collection none is due for as long as this takes.
    duk_gc(ctx, 0);
    ThrownError error;
    if (duk_is_object(ctx, -1)) {
        Read(ctx, ReadProperty, "name", 0);
        error.message = TakeText(ctx);
        Read(ctx, ReadProperty, "message", 0);
        const std::string message = TakeText(ctx);
        if (!error.message.empty() && !message.empty()) error.message += ": ";
        error.message += message;
        Read(ctx, ReadLine, nullptr, 1);
        error.line = duk_get_int(ctx, -1);
        duk_pop(ctx);
    } else {
        Read(ctx, ReadText, nullptr, 1);  // a number's conversion asks for a call
        error.message = TakeText(ctx);
    }
    if (error.message.empty()) error.message = "a value was thrown that has no text";
    return error;
}

}  // namespace quillon
