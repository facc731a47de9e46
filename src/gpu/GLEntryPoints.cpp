#include "gpu/GLEntryPoints.h"

#include <GL/glew.h>

#include <type_traits>

namespace quillon {

namespace {

template <class Result, class... Arguments>
Result GLAPIENTRY inertEntryPoint(Arguments...) {
    if constexpr (!std::is_void_v<Result>) return Result{};
}

template <class Result, class... Arguments>
void fill(Result(GLAPIENTRY*& pointer)(Arguments...)) {
    if (!pointer) pointer = inertEntryPoint<Result, Arguments...>;
}

// Every function that the GPU layer calls beyond those that the system's GL library itself exports.
void fillMissingEntryPoints() {
    fill(__glewActiveTexture);
    fill(__glewAttachShader);
    fill(__glewBindBuffer);
    fill(__glewBindFramebuffer);
    fill(__glewBlitFramebuffer);
    fill(__glewBufferData);
    fill(__glewCompileShader);
    fill(__glewCreateProgram);
    fill(__glewCreateShader);
    fill(__glewDeleteFramebuffers);
    fill(__glewDeleteProgram);
    fill(__glewDeleteShader);
    fill(__glewFramebufferTexture2D);
    fill(__glewGenFramebuffers);
    fill(__glewGetActiveUniform);
    fill(__glewGetBufferParameteriv);
    fill(__glewGetProgramInfoLog);
    fill(__glewGetProgramiv);
    fill(__glewGetShaderInfoLog);
    fill(__glewGetShaderiv);
    fill(__glewGetUniformLocation);
    fill(__glewLinkProgram);
    fill(__glewMapBuffer);
    fill(__glewShaderSource);
    fill(__glewUniform1f);
    fill(__glewUniform1i);
    fill(__glewUniform1iv);
    fill(__glewUniform2fv);
    fill(__glewUniform3fv);
    fill(__glewUniform4fv);
    fill(__glewUnmapBuffer);
    fill(__glewUseProgram);
}

// A script may run before, or without, any context: the pointers are callable from the start.
[[maybe_unused]] const bool filledAtLoad = (fillMissingEntryPoints(), true);

}  // namespace

void LoadGLEntryPoints() {
    // Without a GLX display GLEW reports failure after it has loaded everything; its answer says nothing here.
    glewInit();
    fillMissingEntryPoints();
}

}  // namespace quillon
