#include "gpu/GLEntryPoints.h"

#include <GL/glew.h>

#include <type_traits>

namespace quillon {

namespace {

template <class Result, class... Arguments>
Result GLAPIENTRY InertEntryPoint(Arguments...) {
    if constexpr (!std::is_void_v<Result>) return Result{};
}

template <class Result, class... Arguments>
void Fill(Result(GLAPIENTRY*& pointer)(Arguments...)) {
    if (!pointer) pointer = InertEntryPoint<Result, Arguments...>;
}

// Every function that the GPU layer calls beyond those that the system's GL library itself exports.
void FillMissingEntryPoints() {
    Fill(__glewActiveTexture);
    Fill(__glewAttachShader);
    Fill(__glewBindBuffer);
    Fill(__glewBindFramebuffer);
    Fill(__glewBlitFramebuffer);
    Fill(__glewBufferData);
    Fill(__glewCompileShader);
    Fill(__glewCreateProgram);
    Fill(__glewCreateShader);
    Fill(__glewDeleteFramebuffers);
    Fill(__glewDeleteProgram);
    Fill(__glewDeleteShader);
    Fill(__glewFramebufferTexture2D);
    Fill(__glewGenFramebuffers);
    Fill(__glewGetActiveUniform);
    Fill(__glewGetBufferParameteriv);
    Fill(__glewGetProgramInfoLog);
    Fill(__glewGetProgramiv);
    Fill(__glewGetShaderInfoLog);
    Fill(__glewGetShaderiv);
    Fill(__glewGetUniformLocation);
    Fill(__glewLinkProgram);
    Fill(__glewMapBuffer);
    Fill(__glewShaderSource);
    Fill(__glewUniform1f);
    Fill(__glewUniform1i);
    Fill(__glewUniform1iv);
    Fill(__glewUniform2fv);
    Fill(__glewUniform3fv);
    Fill(__glewUniform4fv);
    Fill(__glewUnmapBuffer);
    Fill(__glewUseProgram);
}

// A script may run before, or without, any context: the pointers are callable from the start.
[[maybe_unused]] const bool kFilledAtLoad = (FillMissingEntryPoints(), true);

}  // namespace

void LoadGLEntryPoints() {
    // Without a GLX display GLEW reports failure after it has loaded everything; its answer says nothing here.
    glewInit();
    FillMissingEntryPoints();
}

}  // namespace quillon
