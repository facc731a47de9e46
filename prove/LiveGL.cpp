// Comes between the modules of this process and the GL library: the loader finds these functions first.

#include "LiveGL.h"

#include <EGL/egl.h>
#include <GL/gl.h>
#include <GL/glext.h>
#include <dlfcn.h>

#include <atomic>
#include <cstring>
#include <iterator>

#define QUILLON_SEEN extern "C" __attribute__((visibility("default")))

namespace quillon::prove {

namespace {

std::atomic<int> contexts, textures, framebuffers, shaders, refusedCalls;
std::atomic<GLRefusal> refusal = GLRefusal::none;

// The function that would have been found without this program.
template <class Function>
Function* Next(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

bool IsRefused(GLRefusal what) {
    if (refusal != what) return false;
    ++refusedCalls;
    return true;
}

PFNGLGENFRAMEBUFFERSPROC nextGenFramebuffers;
PFNGLDELETEFRAMEBUFFERSPROC nextDeleteFramebuffers;
PFNGLCREATESHADERPROC nextCreateShader;
PFNGLDELETESHADERPROC nextDeleteShader;
PFNGLCREATEPROGRAMPROC nextCreateProgram;
PFNGLDELETEPROGRAMPROC nextDeleteProgram;
PFNGLMAPBUFFERPROC nextMapBuffer;

void GenFramebuffers(GLsizei count, GLuint* names) {
    if (IsRefused(GLRefusal::framebuffer)) return;
    framebuffers += count;
    nextGenFramebuffers(count, names);
}
void DeleteFramebuffers(GLsizei count, const GLuint* names) {
    framebuffers -= count;
    nextDeleteFramebuffers(count, names);
}
GLuint CreateShader(GLenum kind) {
    if (IsRefused(GLRefusal::shader)) return 0;
    ++shaders;
    return nextCreateShader(kind);
}
void DeleteShader(GLuint name) {
    shaders -= name != 0 ? 1 : 0;
    nextDeleteShader(name);
}
GLuint CreateProgram() {
    if (IsRefused(GLRefusal::shader)) return 0;
    ++shaders;
    return nextCreateProgram();
}
void DeleteProgram(GLuint name) {
    shaders -= name != 0 ? 1 : 0;
    nextDeleteProgram(name);
}
void* MapBuffer(GLenum target, GLenum access) {
    return IsRefused(GLRefusal::map) ? nullptr : nextMapBuffer(target, access);
}

using AnyFunction = void (*)();

// Functions that modules ask for by name.
struct Asked {
    const char* name;
    AnyFunction* next;
    AnyFunction ours;
};
template <class Function>
Asked AskedRow(const char* name, Function*& next, Function* ours) {
    return {name, reinterpret_cast<AnyFunction*>(&next), reinterpret_cast<AnyFunction>(ours)};
}
const Asked kAsked[] = {
    AskedRow("glGenFramebuffers", nextGenFramebuffers, GenFramebuffers),
    AskedRow("glDeleteFramebuffers", nextDeleteFramebuffers, DeleteFramebuffers),
    AskedRow("glCreateShader", nextCreateShader, CreateShader),
    AskedRow("glDeleteShader", nextDeleteShader, DeleteShader),
    AskedRow("glCreateProgram", nextCreateProgram, CreateProgram),
    AskedRow("glDeleteProgram", nextDeleteProgram, DeleteProgram),
    AskedRow("glMapBuffer", nextMapBuffer, MapBuffer),
};

}  // namespace

LiveGL CountLiveGL() {
    return {contexts, textures, framebuffers, shaders};
}

void RefuseGL(GLRefusal what) {
    refusal = what;
    refusedCalls = 0;
}

int RefusedCalls() {
    return refusedCalls;
}

}  // namespace quillon::prove

using namespace quillon::prove;

QUILLON_SEEN AnyFunction glXGetProcAddressARB(const GLubyte* name) {
    static auto* const kNext = Next(glXGetProcAddressARB, "glXGetProcAddressARB");
    const AnyFunction found = kNext(name);
    for (const Asked& row : kAsked) {
        if (!found || std::strcmp(row.name, reinterpret_cast<const char*>(name)) != 0) continue;
        *row.next = found;
        return row.ours;
    }
    return found;
}

QUILLON_SEEN void glGenTextures(GLsizei count, GLuint* names) {
    static auto* const kNext = Next(glGenTextures, "glGenTextures");
    textures += count;
    kNext(count, names);
}

QUILLON_SEEN void glDeleteTextures(GLsizei count, const GLuint* names) {
    static auto* const kNext = Next(glDeleteTextures, "glDeleteTextures");
    textures -= count;
    kNext(count, names);
}

QUILLON_SEEN void glTexImage2D(GLenum target, GLint level, GLint internalFormat, GLsizei width, GLsizei height,
                               GLint border, GLenum format, GLenum type, const void* pixels) {
    static auto* const kNext = Next(glTexImage2D, "glTexImage2D");
    const bool isFloat = type == GL_FLOAT;
    if (IsRefused(GLRefusal::anyTexture) || (isFloat && IsRefused(GLRefusal::floatTextures))) internalFormat = -1;
    kNext(target, level, internalFormat, width, height, border, format, type, pixels);
}

QUILLON_SEEN EGLContext eglCreateContext(EGLDisplay display, EGLConfig config, EGLContext share,
                                         const EGLint* attributes) {
    static auto* const kNext = Next(eglCreateContext, "eglCreateContext");
    if (IsRefused(GLRefusal::context)) return EGL_NO_CONTEXT;
    ++contexts;
    return kNext(display, config, share, attributes);
}

QUILLON_SEEN EGLBoolean eglDestroyContext(EGLDisplay display, EGLContext context) {
    static auto* const kNext = Next(eglDestroyContext, "eglDestroyContext");
    --contexts;
    return kNext(display, context);
}

QUILLON_SEEN EGLSurface eglCreatePbufferSurface(EGLDisplay display, EGLConfig config, const EGLint* attributes) {
    static auto* const kNext = Next(eglCreatePbufferSurface, "eglCreatePbufferSurface");
    return IsRefused(GLRefusal::surface) ? EGL_NO_SURFACE : kNext(display, config, attributes);
}

QUILLON_SEEN EGLBoolean eglMakeCurrent(EGLDisplay display, EGLSurface draw, EGLSurface read, EGLContext context) {
    static auto* const kNext = Next(eglMakeCurrent, "eglMakeCurrent");
    return IsRefused(GLRefusal::current) ? EGL_FALSE : kNext(display, draw, read, context);
}
