#include "cli/check/watch/PassChecks.h"

#include <fmt/format.h>

#include "cli/check/watch/ShaderFacts.h"
#include "entities/Context.h"
#include "gpu/Shader.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

bool IsSampler(const Parameter& uniform) {
    return ControlKindOf(uniform.kind).uniformType == UniformType::sampler2D;
}

// The argument that says where a call draws; nothing for a call that does not.
std::optional<std::size_t> TargetArgumentOf(std::string_view native) {
    const bool draws = native == "QL_renderShader" || native == "QL_blitRenderTarget" || native == "QL_surfaceCopyTo";
    return draws ? std::optional<std::size_t>(1) : std::nullopt;
}

}  // namespace

void PassChecks::entryBegins() {
    passes = 0;
    hasOutput = false;
}

void PassChecks::entryEnds(bool hasFailed) {
    if (run.entry != Entry::draw || hasFailed || hasOutput) return;
    run.findings.addAtDraw("script/no-output", passes == 0 ? "draw: runs no pass, so that the frame is not defined"
                                                           : "draw: no pass draws into QL_getSequenceRT(), so that the "
                                                             "frame is not defined");
}

void PassChecks::before(const NativeCall& call) {
    if (call.name() == "QL_renderShader") {
        checkSamplers(call, call.idOf(0).value_or(0));
    } else if (call.name() == "QL_blitRenderTarget" && call.idOf(0) == call.idOf(1) &&
               IsLive(call.idOf(0).value_or(0))) {
        run.findings.add("script/reads-own-target", call, "source and destination are one target");
    }
}

void PassChecks::after(const NativeCall& call) {
    if (call.name() == "QL_initShader") {
        const auto id = static_cast<std::uint32_t>(call.resultNumber());
        std::erase_if(sources, [id](const auto& source) { return source.first.first == id; });
    }
    if (call.name() == "QL_setShaderParam" || call.name() == "QL_setShaderParamVal") noteSampler(call);
    const auto argument = TargetArgumentOf(call.name());
    if (!argument || call.isRefused()) return;
    ++passes;
    const std::uint32_t output = Context::Instance().CurrentSequence().renderTarget;
    if (output != 0 && call.idOf(*argument) == output) hasOutput = true;
}

void PassChecks::noteSampler(const NativeCall& call) {
    const std::uint32_t shader = call.idOf(0).value_or(0);
    std::string name(call.textOf(1));
    std::uint32_t id = call.idOf(2).value_or(0);
    if (call.name() == "QL_setShaderParam") {
        id = call.idOf(1).value_or(0);
        name = Context::Instance().FindParameter(id).uniformName;
    }
    const Entities::Record* const record = run.entities.findLiving(id);
    sources[{shader, name}] = {id, record ? record->serial : 0};
}

void PassChecks::checkSamplers(const NativeCall& call, std::uint32_t shaderId) const {
    if (KindOfId(shaderId) != EntityKind::shader || !IsLive(shaderId)) return;
    const std::uint32_t targetId = call.idOf(1).value_or(0);
    const RenderTarget& target = Context::Instance().FindRenderTarget(targetId);
    const Shader& shader = Context::Instance().FindShader(shaderId);
    for (const Parameter& uniform : shader.parameters) {
        if (!IsSampler(uniform)) continue;
        const auto source = sources.find({shaderId, uniform.uniformName});
        const std::string words = WordsOfUniform(shader, uniform.uniformName);
        if (source == sources.end()) {
            run.findings.add("script/unset-sampler", call, fmt::format("sampler {} was never set", words), {},
                             uniform.uniformName);
            continue;
        }
        const auto [id, serial] = source->second;
        const Entities::Record* const record = serial != 0 ? run.entities.find(id) : nullptr;
        if (record && (record->serial != serial || record->releasedAt != 0))
            run.findings.add("script/dead-id", call,
                             fmt::format("sampler {} reads {} that was released{}", words,
                                         WordsOf(KindOfId(record->id)), run.findings.wordsOfLine(record->releasedAt)),
                             "set the sampler anew, or release the picture after its last pass");
        else if (target.textureName && uniform.wordValue() == target.textureName.get())
            run.findings.add("script/reads-own-target", call,
                             fmt::format("sampler {} reads the target that the pass draws into", words));
    }
}

}  // namespace quillon::cli
