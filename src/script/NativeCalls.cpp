#include "script/NativeCalls.h"

#include <duktape.h>

#include <limits>

#include "script/CallingLines.h"
#include "script/Natives.h"
#include "script/Scripting.h"

namespace quillon {

namespace {

constexpr duk_int_t kArrayClass = 2;  // DUK_HOBJECT_CLASS_ARRAY of the heap
constexpr const char* kNativeKey = DUK_HIDDEN_SYMBOL("native");

NativeListener* heard = nullptr;

duk_idx_t IndexOf(std::size_t argument) {
    return static_cast<duk_idx_t>(argument);
}

// Of an array and not of a proxy of one, which is a script. The value is on the stack.
bool IsPlainArray(duk_context* ctx, duk_idx_t index) {
    if (!duk_is_array(ctx, index)) return false;
    duk_inspect_value(ctx, index);
    duk_get_prop_string(ctx, -1, "class");
    const bool isArray = duk_get_int(ctx, -1) == kArrayClass;
    duk_pop_2(ctx);
    return isArray;
}

const Native& NativeAt(std::size_t index) {
    const auto tables = NativeTables();
    auto table = tables.begin();
    for (; index >= table->size(); ++table) index -= table->size();
    return (*table)[index];
}

}  // namespace

// Takes the place of a native, whose function it keeps, and calls it with the same arguments.
class NativeCallTeller {
public:
    static void Replace(duk_context* ctx, const Native& native, std::size_t index) {
        duk_push_c_function(ctx, Call, DUK_VARARGS);
        duk_set_magic(ctx, -1, static_cast<duk_int_t>(index));
        duk_get_global_string(ctx, native.name);
        // It counts as many parameters as the native.
        duk_push_string(ctx, "length");
        duk_get_prop_string(ctx, -2, "length");
        duk_def_prop(ctx, -4, DUK_DEFPROP_HAVE_VALUE | DUK_DEFPROP_FORCE);
        duk_put_prop_string(ctx, -2, kNativeKey);
        duk_put_global_string(ctx, native.name);
    }

private:
    static duk_ret_t Call(duk_context* ctx) {
        const duk_idx_t count = duk_get_top(ctx);
        duk_require_stack(ctx, count + 16);
        const NativeCall call(ctx, NativeAt(static_cast<std::size_t>(duk_get_current_magic(ctx))),
                              static_cast<std::size_t>(count));
        Tell(ctx, &NativeListener::before, call);
        duk_push_current_function(ctx);
        duk_get_prop_string(ctx, -1, kNativeKey);
        for (duk_idx_t i = 0; i < count; ++i) duk_dup(ctx, i);
        duk_call(ctx, count);
        Tell(ctx, &NativeListener::after, call);
        return 1;
    }

    static void Tell(duk_context* ctx, void (NativeListener::*what)(const NativeCall&), const NativeCall& call) {
        if (!heard) return;
        try {
            return (heard->*what)(call);
        } catch (...) {
            Scripting::instance().keepException();
        }
        duk_error(ctx, DUK_ERR_ERROR, "a native function failed");
    }
};

void TellOfNativeCalls(duk_hthread* ctx, NativeListener& listener) {
    heard = &listener;
    std::size_t index = 0;
    for (const auto natives : NativeTables())
        for (const Native& native : natives) NativeCallTeller::Replace(ctx, native, index++);
}

void ForgetNativeListener() {
    heard = nullptr;
}

std::string_view NativeCall::name() const {
    return native->name;
}

NativeCall::Type NativeCall::typeOf(std::size_t argument) const {
    if (argument >= argumentCount) return Type::missing;
    const duk_idx_t index = IndexOf(argument);
    switch (duk_get_type(heap, index)) {
        case DUK_TYPE_UNDEFINED:
            return Type::undefined;
        case DUK_TYPE_NULL:
            return Type::null;
        case DUK_TYPE_BOOLEAN:
            return Type::boolean;
        case DUK_TYPE_NUMBER:
            return Type::number;
        case DUK_TYPE_STRING:
            return duk_is_symbol(heap, index) ? Type::other : Type::text;
        case DUK_TYPE_OBJECT:
            return IsPlainArray(heap, index) ? Type::array : Type::other;
        default:
            return Type::other;
    }
}

std::optional<double> NativeCall::numberOf(std::size_t argument) const {
    const Type type = typeOf(argument);
    if (type == Type::missing) return std::numeric_limits<double>::quiet_NaN();
    if (type == Type::array || type == Type::other) return {};
    duk_dup(heap, IndexOf(argument));
    const double number = duk_to_number(heap, -1);
    duk_pop(heap);
    return number;
}

std::optional<std::uint32_t> NativeCall::idOf(std::size_t argument) const {
    const std::optional<double> number = numberOf(argument);
    if (!number) return {};
    duk_push_number(heap, *number);
    const duk_int_t id = duk_to_int(heap, -1);
    duk_pop(heap);
    return static_cast<std::uint32_t>(id);
}

bool NativeCall::isTrue(std::size_t argument) const {
    if (argument >= argumentCount) return false;
    duk_dup(heap, IndexOf(argument));
    const bool isIt = duk_to_boolean(heap, -1) != 0;
    duk_pop(heap);
    return isIt;
}

std::string_view NativeCall::textOf(std::size_t argument) const {
    if (typeOf(argument) != Type::text) return {};
    duk_size_t length = 0;
    const char* const text = duk_get_lstring(heap, IndexOf(argument), &length);
    return {text, length};
}

std::size_t NativeCall::lengthOf(std::size_t argument) const {
    return typeOf(argument) == Type::array ? duk_get_length(heap, IndexOf(argument)) : 0;
}

bool NativeCall::isRefused() const {
    return duk_is_boolean(heap, -1) && !duk_get_boolean(heap, -1);
}

double NativeCall::resultNumber() const {
    return duk_is_number(heap, -1) ? duk_get_number(heap, -1) : 0;
}

std::size_t NativeCall::lines(std::span<int> innermostFirst) const {
    return CallingLines(heap, innermostFirst);
}

}  // namespace quillon
