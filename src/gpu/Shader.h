#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "gpu/GLNames.h"
#include "parameter/Parameter.h"
#include "parameter/ParametersHolder.h"

namespace quillon {

// One linked GLSL program: a fixed vertex stage and a fragment stage by the effect's author, who writes it in the GLSL
// of the fixed-function era against ordinary RGBA (see FragmentRewriting.h). A pass draws one quad over its target.
//
// A shader is not built (no GL names), built but failed (errorText set), or usable. Uniform values stay from pass to
// pass and are all sent at every draw. Everything here needs the GL lock.
class Shader {
public:
    // The kind's factory, in entities/Factories.h.
    class Factory;

    // Comes before every stage, as a separate string.
    static constexpr const char* kPreamble = "#define SWIZZLE gbar\n#define QUILLON 1\n";
    static constexpr int kPreambleLines = 2;

    Shader() = default;
    virtual ~Shader() = default;
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;

    // New GL objects with the vertex stage compiled. False when that fails.
    virtual bool createProgram();
    // Deletes the GL objects and empties errorText.
    virtual void destroyProgram();
    // Rewrites, compiles and links a fragment text and reflects its uniforms. Empty text: false, and nothing changes.
    virtual bool compileSource(const std::string& text);
    // The same with a file of the package.
    virtual bool compileFile(const std::wstring& filePath);
    // Everything again, from the kept text or from the kept path.
    virtual bool rebuild(bool fromSource);
    // Makes the program current and starts to hand out texture units. False, and nothing, unless usable.
    virtual bool bind();
    // The program stays in use.
    virtual void unbind();
    // Sends all uniforms and draws the quad into what is bound. Texture row t = 0 goes to the target's y = 0; with
    // `flip`, t = 1 does. Leaves the GL state as the draw needed it.
    virtual void render(bool flip);

    // The first build of an entity. An empty source means the file BASEPATH\NAME.frag. `declared` are the effect's
    // controls, whose kinds win over GLSL's types where the names agree; it outlives the shader.
    bool initFromName(const std::string& shaderName, const std::string& fragmentSource, const std::wstring& basePath,
                      ParametersHolder& declared);

    // All three GL names exist; the shader may have failed all the same.
    bool isBuilt() const { return program && vertexShader && fragmentShader; }

    // GL location of a uniform, -1 when the program has none of that name; cached until the next compile.
    std::int32_t uniformLocation(const std::string& uniformName);
    // Index in `parameters`, or -1. Answers found once stay, also across a compile that moves the uniforms.
    std::int32_t parameterIndex(const std::string& uniformName);
    // The uniform's record, or an empty one, to which nothing may be written.
    Parameter& parameterByName(const std::string& uniformName);

    std::wstring name;
    std::wstring path;      // of the fragment file; empty when compiled from text
    std::string errorText;  // last compile or link message; empty means usable
    std::string source;     // the fragment text as given
    GLShaderName vertexShader;
    GLShaderName fragmentShader;
    GLProgramName program;
    std::vector<Parameter> parameters;  // the active uniforms by GL's index, those of no size left out

private:
    // Whether the stage compiles; sets or empties errorText.
    bool compileStage(std::uint32_t stage, const std::string& text);
    void reflectUniforms();
    std::uint32_t uniformKind(std::uint32_t glType, std::int32_t size);
    void applyUniforms();
    void applyTextureParams(std::int32_t width, std::int32_t height);

    ParametersHolder* declaredParameters = nullptr;
    std::int32_t nextTextureUnit = 0;
    std::map<std::string, std::int32_t> locationCache;
    std::map<std::string, std::int32_t> indexCache;
};

}  // namespace quillon
