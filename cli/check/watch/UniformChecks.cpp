#include "cli/check/watch/UniformChecks.h"

#include <fmt/format.h>

#include <cmath>

#include "cli/check/watch/Arguments.h"
#include "cli/diagnostics/NearestName.h"
#include "cli/diagnostics/TextScanner.h"
#include "entities/Context.h"
#include "gpu/Shader.h"
#include "platform/WideText.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

using Type = NativeCall::Type;

constexpr double kNoValue = -12345678;  // leaves a uniform as it is

// The shader of the first argument; null when there is no such shader or it does not compile, which other
// checks report.
const Shader* ShaderOf(const NativeCall& call) {
    const std::uint32_t id = call.idOf(0).value_or(0);
    if (KindOfId(id) != EntityKind::shader || !IsLive(id)) return nullptr;
    const Shader& shader = Context::Instance().FindShader(id);
    return shader.isBuilt() && shader.errorText.empty() ? &shader : nullptr;
}

const Parameter* ControlOf(const NativeCall& call, std::size_t argument) {
    const std::uint32_t id = call.idOf(argument).value_or(0);
    if (KindOfId(id) != EntityKind::control || !IsLive(id)) return nullptr;
    return &Context::Instance().FindParameter(id);
}

const Parameter* ControlNamed(const std::string& name) {
    Context& context = Context::Instance();
    for (std::uint32_t i = 0; i < context.Count(); ++i)
        if (context.At(i).uniformName == name) return &context.At(i);
    return nullptr;
}

}  // namespace

void UniformChecks::before(const NativeCall& call) {
    const bool isOfControl = call.name() == "QL_setShaderParam";
    if (!isOfControl && call.name() != "QL_setShaderParamVal") return;
    const Shader* const shader = ShaderOf(call);
    if (!shader) return;
    if (isOfControl)
        checkControl(call, *shader);
    else if (call.typeOf(1) == Type::text)
        checkValue(call, *shader);
}

void UniformChecks::after(const NativeCall& call) {
    if (call.name() != "QL_initShader") return;
    const auto id = static_cast<std::uint32_t>(call.resultNumber());
    const Shader& shader = Context::Instance().FindShader(id);
    shaders[id] = shader.isBuilt() && shader.errorText.empty() ? UniformsOf(shader) : DeclaredUniforms();
}

void UniformChecks::finish() {
    for (const auto& [line, misses] : met)
        if (!misses.hasHit && !misses.text.empty())
            run.findings.add("script/unknown-uniform", misses.place, misses.text, misses.remedy);
}

void UniformChecks::checkControl(const NativeCall& call, const Shader& shader) {
    const Parameter* const control = ControlOf(call, 1);
    if (!control) return;
    const Parameter* const uniform = FindUniform(shader, control->uniformName);
    if (!uniform) return noteMiss(call, shader, control->uniformName);
    met[LineOf(call)].hasHit = true;
    if (!checkKind(call, shader, *uniform) || uniform->kind == control->kind) return;
    run.findings.add("script/uniform-type", call,
                     fmt::format("control '{}' is declared after shader \"{}\", which takes its uniform for {}",
                                 control->uniformName, NarrowToBytes(shader.name), ControlKindOf(uniform->kind).name),
                     "declare controls before the shaders that use them");
}

bool UniformChecks::checkKind(const NativeCall& call, const Shader& shader, const Parameter& uniform) const {
    const DeclaredUniform* const text = declared(call, uniform.uniformName);
    const ControlKind& kind = ControlKindOf(uniform.kind);
    if (!text || Feeds(kind, text->glType)) return true;
    const std::string words = WordsOfUniform(shader, uniform.uniformName);
    const std::string_view type = WordsOfGLType(text->glType);
    if (!ControlNamed(uniform.uniformName)) {
        run.findings.add("script/wrong-value", call,
                         fmt::format("{} is {}, which a script cannot set", words, WithArticle(type)),
                         "declare float, vec2, vec3, vec4, int, bool or sampler2D");
        return false;
    }
    const std::string_view needed = WordsOfGLType(static_cast<std::uint32_t>(kind.uniformType));
    const bool hasUniform = kind.uniformType != UniformType::none;
    run.findings.add("script/uniform-type", call,
                     hasUniform ? fmt::format("{} is {}; the control of this name is {}, which feeds {}", words,
                                              WithArticle(type), WithArticle(kind.name), WithArticle(needed))
                                : fmt::format("{} is never set: the control of this name is {}, which feeds no uniform",
                                              words, WithArticle(kind.name)),
                     hasUniform ? fmt::format("declare `uniform {} {};`", needed, uniform.uniformName)
                                : "give control and uniform different names");
    return false;
}

void UniformChecks::checkValue(const NativeCall& call, const Shader& shader) {
    const std::string name(call.textOf(1));
    const Parameter* const uniform = FindUniform(shader, name);
    if (!uniform && declared(call, name + "[0]"))
        return run.findings.add("script/wrong-value", call,
                                fmt::format("{} is an array, which a script cannot set", WordsOfUniform(shader, name)),
                                "declare one uniform for each element");
    if (!uniform) return noteMiss(call, shader, name);
    met[LineOf(call)].hasHit = true;
    if (checkKind(call, shader, *uniform)) checkForm(call, shader, *uniform);
}

void UniformChecks::checkForm(const NativeCall& call, const Shader& shader, const Parameter& uniform) const {
    const ControlKind& kind = ControlKindOf(uniform.kind);
    if (kind.scriptForm == ScriptForm::entity) return checkPicture(call, WordsOfUniform(shader, uniform.uniformName));
    const bool takesArray = kind.floats > 1;
    const Type type = call.typeOf(2);
    std::string given;
    if (type == Type::array && call.lengthOf(2) != (takesArray ? kind.floats : 1))
        given = fmt::format("an array of {}", call.lengthOf(2));
    else if (takesArray && type != Type::array)
        given = fmt::format("{} that is no array", type == Type::number ? "a number" : "a value");
    else if (!takesArray && type != Type::array && type != Type::other && std::isnan(*call.numberOf(2)))
        given = type == Type::number ? "NaN" : type == Type::text ? "a text that is no number" : "undefined";
    if (given.empty()) return;
    const std::string needed = takesArray ? fmt::format("an array of {} numbers", kind.floats) : "a number";
    run.findings.add(
        "script/wrong-value", call,
        fmt::format("{} takes {} and is given {}", WordsOfUniform(shader, uniform.uniformName), needed, given));
}

void UniformChecks::checkPicture(const NativeCall& call, const std::string& uniform) const {
    if (call.numberOf(2) == kNoValue) return;
    const Fit fit = FitOf(Role::anyPicture, call, 2);
    if (fit == Fit::fits) return;
    const bool isDead = fit == Fit::namesNothing;
    run.findings.add(isDead ? "script/dead-id" : "script/wrong-value", call,
                     fmt::format("{} is a sampler and is given {}{}", uniform, WordsOfArgument(run, call, 2),
                                 isDead ? ", which names nothing" : ""),
                     fmt::format("give it {}", WordsOfRole(Role::anyPicture)));
}

void UniformChecks::noteMiss(const NativeCall& call, const Shader& shader, const std::string& name) {
    Misses& misses = met[LineOf(call)];
    if (misses.hasHit || !misses.text.empty()) return;
    const std::string file = NarrowToBytes(shader.name);
    misses.place = run.findings.placeOf(call);
    if (HoldsWord(shader.source, name)) {
        misses.text =
            fmt::format("{}: the compiler has removed '{}' of shader \"{}\", since the result does not depend on it",
                        call.name(), name, file);
        misses.remedy = "use it in the shader, or leave this call out";
        return;
    }
    misses.text = fmt::format("{}: shader \"{}\" has no uniform '{}'", call.name(), file, name);
    std::vector<std::string> known;
    for (const Parameter& uniform : shader.parameters) known.push_back(uniform.uniformName);
    misses.remedy = DidYouMean(name, known);
}

const DeclaredUniform* UniformChecks::declared(const NativeCall& call, const std::string& name) const {
    const auto shader = shaders.find(call.idOf(0).value_or(0));
    if (shader == shaders.end()) return nullptr;
    const auto found = shader->second.find(name);
    return found == shader->second.end() ? nullptr : &found->second;
}

}  // namespace quillon::cli
