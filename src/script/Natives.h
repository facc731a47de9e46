#pragma once

#include <duktape.h>

#include <array>
#include <span>

namespace quillon {

// One function of the script API.
//
// The contract of `call`: first it coerces all its arguments, since a coercion may run script code, raise an error and
// jump past C++ frames; only then it looks entities up, and it holds no reference to one across a coercion; then it
// acts. While Duktape is called nothing that owns memory lives in the frame. It returns 1, with its result on top of
// the stack. C++ exceptions may leave it: the wrapper that binds it keeps them for Scripting::Eval.
struct Native {
    const char* name;
    duk_c_function call;
    int leastArguments;            // without which a call cannot do its work
    int mostArguments;             // that are read
    bool countsArguments = false;  // it behaves in another way when some are missing than when they are undefined

    duk_idx_t arity() const { return countsArguments ? DUK_VARARGS : mostArguments; }
};

// The tables of the API, one a family.
std::span<const Native> ParameterNatives();
std::span<const Native> RenderTargetNatives();
std::span<const Native> ShaderNatives();
std::span<const Native> TextureNatives();
std::span<const Native> SurfaceNatives();
std::span<const Native> HostNatives();

// All of them, in the order in which they are bound.
inline std::array<std::span<const Native>, 6> NativeTables() {
    return {ParameterNatives(), RenderTargetNatives(), ShaderNatives(),
            TextureNatives(),   SurfaceNatives(),      HostNatives()};
}

// Runs Function with C++ exceptions caught: one becomes a script error, and is thrown on from Scripting::Eval.
duk_ret_t RunNative(duk_context* ctx, duk_c_function function);

template <duk_c_function Function>
duk_ret_t Guarded(duk_context* ctx) {
    return RunNative(ctx, Function);
}

}  // namespace quillon
