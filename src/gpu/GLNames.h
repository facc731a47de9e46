#pragma once

#include <cstdint>
#include <utility>

namespace quillon {

// GL objects are deleted here and nowhere else. All need the GL lock, except once the process is ending.
void DeleteGLTexture(std::uint32_t name);
void DeleteGLFramebuffer(std::uint32_t name);
void DeleteGLShader(std::uint32_t name);
void DeleteGLProgram(std::uint32_t name);

// From here on names are dropped without a word to GL: at process exit its driver may be gone already.
void AbandonGLObjects();

// The one owner of a GL name; 0 owns nothing. Assigning ends the old name at once.
template <void (*Delete)(std::uint32_t)>
class GLName {
public:
    GLName() = default;
    explicit GLName(std::uint32_t ownedName) : name(ownedName) {}
    GLName(GLName&& other) noexcept : name(other.release()) {}
    GLName& operator=(GLName&& other) noexcept {
        reset(other.release());
        return *this;
    }
    ~GLName() { reset(); }

    std::uint32_t get() const { return name; }
    explicit operator bool() const { return name != 0; }
    std::uint32_t release() { return std::exchange(name, 0); }
    void reset(std::uint32_t next = 0) {
        const std::uint32_t old = std::exchange(name, next);
        if (old != 0 && old != next) Delete(old);
    }

private:
    std::uint32_t name = 0;
};

using GLTextureName = GLName<DeleteGLTexture>;
using GLFramebufferName = GLName<DeleteGLFramebuffer>;
using GLShaderName = GLName<DeleteGLShader>;
using GLProgramName = GLName<DeleteGLProgram>;

}  // namespace quillon
