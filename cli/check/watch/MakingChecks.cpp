#include "cli/check/watch/MakingChecks.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/diagnostics/NearestName.h"
#include "entities/Context.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

// So many frames in a row leave more than the frame before. A script that keeps the last frames stops before that.
constexpr std::size_t kGrowingFrames = 50;

bool IsDepth(double bits) {
    return bits == 8 || bits == 15 || bits == 16 || bits == 32;
}

}  // namespace

void MakingChecks::before(const NativeCall& call) {
    if (call.name() == "QL_release") checkRelease(call);
}

void MakingChecks::after(const NativeCall& call) {
    if (call.name() == "QL_initTexture") checkPicture(call);
    if (call.name() == "QL_initRenderTarget") checkTarget(call);
    if (call.name() == "QL_initParam" && run.entry != Entry::setup)
        run.findings.add("script/late-control", call, "the host has its list of controls already");
    if (call.name() == "QL_setOutputExtent" && run.entry != Entry::preRender)
        run.findings.add("script/no-effect", call, "the output has its size already", "call it in preRender()");
}

void MakingChecks::checkPicture(const NativeCall& call) const {
    if (call.count() == 0) return;
    const Texture& texture = Context::Instance().FindTexture(static_cast<std::uint32_t>(call.resultNumber()));
    if (texture.textureName) return;
    const std::string file(call.textOf(0));
    if (source.find(file.substr(file.find_last_of("\\/:") + 1)))
        return run.findings.add("package/unreadable-picture", call,
                                fmt::format("\"{}\" is no picture that can be read", file), {}, file);
    std::vector<std::string> names;
    for (const PackageFile& packed : source.files) names.push_back(packed.name);
    run.findings.add("package/missing-picture", call, fmt::format("the effect has no file \"{}\"", file),
                     DidYouMean(file, names), file);
}

void MakingChecks::checkTarget(const NativeCall& call) const {
    const RenderTarget& target = Context::Instance().FindRenderTarget(static_cast<std::uint32_t>(call.resultNumber()));
    const bool isEmpty = target.width == 0 || target.height == 0;
    if (!isEmpty && target.isUsable() && target.storageExists() && IsDepth(target.bitDepth)) return;
    const std::string words =
        fmt::format("a target of {}x{} pixels at {} bits", static_cast<std::int32_t>(target.width),
                    static_cast<std::int32_t>(target.height), static_cast<std::int32_t>(target.bitDepth));
    run.findings.add("script/not-created", call,
                     IsDepth(target.bitDepth) ? fmt::format("there is no such thing as {}", words)
                                              : fmt::format("{} is asked for, and 8, 16 and 32 bits exist", words));
}

void MakingChecks::checkRelease(const NativeCall& call) const {
    const std::uint32_t id = call.idOf(0).value_or(0);
    if (!IsLive(id)) return;
    Context& context = Context::Instance();
    const Sequence& sequence = context.CurrentSequence();
    std::string use;
    if (id == sequence.renderTarget) use = "the output of the frame";
    if (id == sequence.texture) use = "the input of the frame";
    for (std::uint32_t i = 0; use.empty() && i < context.Count(); ++i)
        if (context.At(i).texture == id)
            use = fmt::format("the texture of the control '{}'", context.At(i).uniformName);
    if (KindOfId(id) == EntityKind::control && run.entry != Entry::setup) use = "a control that the host shows";
    if (!use.empty()) run.findings.add("script/release-in-use", call, fmt::format("this is {}", use));
}

void MakingChecks::entryEnds(bool /*hasFailed*/) {
    if (run.entry != Entry::draw) return;
    std::map<int, std::size_t> living;
    for (const Entities::Record& record : run.entities.living())
        if (record.isOfFrame) ++living[record.line];
    std::erase_if(livingAfterFrames, [&](const auto& line) { return !living.contains(line.first); });
    for (const auto& [line, count] : living) {
        std::vector<std::size_t>& counts = livingAfterFrames[line];
        if (!counts.empty() && counts.back() >= count) counts.clear();
        counts.push_back(count);
    }
}

void MakingChecks::finish() {
    for (const auto& [line, counts] : livingAfterFrames) {
        if (counts.size() < kGrowingFrames) continue;
        run.findings.add("script/growth", run.findings.placeOf(line),
                         fmt::format("each frame makes something here that is never released: {} after {} frames",
                                     counts.back(), run.entities.frameCount()));
    }
}

}  // namespace quillon::cli
