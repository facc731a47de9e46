#pragma once

// How natives read their arguments. Each coercion rewrites the stack slot in place, may run script code, and may raise
// a script error, which jumps out of the native.

#include <duktape.h>

#include <cstdint>
#include <span>

#include "entities/Context.h"

namespace quillon {

// Ids, and whatever else is unsigned inside but clamped like an int on its way in.
inline std::uint32_t ToUnsigned(duk_context* ctx, duk_idx_t index) {
    return static_cast<std::uint32_t>(duk_to_int(ctx, index));
}

inline float ToFloat(duk_context* ctx, duk_idx_t index) {
    return static_cast<float>(duk_to_number(ctx, index));
}

// One element of an array as a float; NaN for a missing one.
inline float ElementToFloat(duk_context* ctx, duk_idx_t array, duk_uarridx_t element) {
    duk_get_prop_index(ctx, array, element);
    const float number = ToFloat(ctx, -1);
    duk_pop(ctx);
    return number;
}

// The first elements of an array, all read before any is used.
inline void ElementsToFloats(duk_context* ctx, duk_idx_t array, std::span<float> floats) {
    for (duk_uarridx_t element = 0; element < floats.size(); ++element)
        floats[element] = ElementToFloat(ctx, array, element);
}

// Pushes a new array of numbers; 1, as natives return it.
inline duk_ret_t PushNumbers(duk_context* ctx, std::span<const double> numbers) {
    const duk_idx_t array = duk_push_array(ctx);
    for (duk_uarridx_t element = 0; element < numbers.size(); ++element) {
        duk_push_number(ctx, numbers[element]);
        duk_put_prop_index(ctx, array, element);
    }
    return 1;
}

inline duk_ret_t PushBool(duk_context* ctx, bool value) {
    value ? duk_push_true(ctx) : duk_push_false(ctx);
    return 1;
}

inline duk_ret_t PushNumber(duk_context* ctx, double number) {
    duk_push_number(ctx, number);
    return 1;
}

template <class Kind>
bool IsIdOf(std::uint32_t id) {
    return TagOf(id) == Kind::Factory::kTag;
}

// The texture that an id names: a parameter's, a target's own, or the texture of that id. The null texture for any
// other id.
Texture& TextureOfId(std::uint32_t id);

}  // namespace quillon
