#pragma once

#include <map>
#include <string>
#include <utility>

#include "cli/check/watch/CallCheck.h"
#include "cli/check/watch/ShaderFacts.h"

namespace quillon::cli {

// What the script gives to uniforms: names that the shader does not have, values of the wrong form, controls that fit
// no such uniform.
class UniformChecks : public CallCheck {
public:
    using CallCheck::CallCheck;
    void before(const NativeCall& call) override;
    void after(const NativeCall& call) override;
    void finish() override;

private:
    void checkControl(const NativeCall& call, const Shader& shader);
    void checkValue(const NativeCall& call, const Shader& shader);
    void checkForm(const NativeCall& call, const Shader& shader, const Parameter& uniform) const;
    void checkPicture(const NativeCall& call, const std::string& uniform) const;
    // Whether the uniform's kind, which a control of its name decides, is what the shader's text declares.
    bool checkKind(const NativeCall& call, const Shader& shader, const Parameter& uniform) const;
    void noteMiss(const NativeCall& call, const Shader& shader, const std::string& name);
    const DeclaredUniform* declared(const NativeCall& call, const std::string& name) const;

    std::map<std::uint32_t, DeclaredUniforms> shaders;  // by id
    // By line, what a call there has met: a uniform at some time, as one that serves several shaders does, or none so
    // far.
    struct Misses {
        bool hasHit = false;
        Place place = {};
        std::string text = {};  // empty: it has missed none
        std::string remedy = {};
    };
    std::map<int, Misses> met;
};

}  // namespace quillon::cli
