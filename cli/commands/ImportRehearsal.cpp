#include "cli/commands/ImportRehearsal.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <set>
#include <span>
#include <stdexcept>

#include "cli/diagnostics/Rules.h"
#include "cli/effect/HostRun.h"
#include "cli/effect/LinkedEngine.h"
#include "cli/effect/PackedModule.h"
#include "host/World.h"

namespace quillon::cli {

namespace {

constexpr const char* kProbeFile = "cornerProbe.frag";
constexpr const char* kProbeScript = R"(
(function () {
    var start = setup, probe = 0;
    setup = function () { start(); probe = QL_initShader('cornerProbe'); };
    draw = function () { QL_renderShader(probe, QL_getSequenceRT(), false); };
})();
)";

PackageFile FileOf(const std::string& name, const std::string& text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {name, {bytes.begin(), bytes.end()}};
}

// The effect, whose frames show the trials of its vertex stage.
EffectSource WithProbe(EffectSource source, const CornerProbe& probe) {
    for (PackageFile& file : source.files) {
        if (file.name == "fx.js") file = FileOf(file.name, source.textOf(file.name) + kProbeScript);
    }
    source.files.push_back(FileOf(kProbeFile, probe.shader));
    std::ranges::sort(source.files, {}, &PackageFile::name);
    return source;
}

void ReadTrials(const host::World& picture, const CornerProbe& probe, Diagnostics& findings) {
    const std::vector<std::byte> bytes = picture.tightBytes();
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    bool isFree = false;
    std::set<std::string> bent;
    for (std::size_t i = 0; i + 3 < samples.size(); i += 4) {  // alpha, red, green, blue
        isFree = isFree || samples[i + 1] > 0.5f;
        const auto number = static_cast<std::size_t>(std::max(samples[i + 2] + 0.5f, 0.0f));
        if (number > 0 && number <= probe.varyings.size()) bent.insert(probe.varyings[number - 1]);
    }
    Diagnostic finding{.path = probe.file, .kind = Diagnostic::Kind::shader};
    if (isFree) {
        finding.line = probe.line;
        finding.text = "gl_Position: the four corners move freely, and what is between them depends on the driver";
        finding.remedy =
            "move them together by one scale, turn, shift or perspective, or remove the file and work out the place in "
            "the fragments";
        findings.push_back(finding);
        return;
    }
    for (const std::string& name : bent) {
        finding.severity = Diagnostic::Severity::warning;
        finding.text = fmt::format(
            "varying {}: its values at the four corners are not on one plane; between them it follows three of these",
            name);
        findings.push_back(finding);
    }
}

}  // namespace

Diagnostics RehearseImport(const EffectSource& source, ImportedEffect& effect) {
    const bool hasProbe = !effect.corners.shader.empty();
    const EffectSource rehearsed = hasProbe ? WithProbe(source, effect.corners) : source;
    const PackedModule packed(rehearsed);
    const host::HostSettings settings;
    HostRun rehearsal(LinkedEngine::WithPackageOf(packed.effect()), settings);
    LinkedEngine::Listen(rehearsed);
    Diagnostics faults;
    try {
        rehearsal.start();
        if (hasProbe) rehearsal.apply();
    } catch (const std::runtime_error& error) {
        faults = LinkedEngine::TakeFaults(rehearsed);
        if (faults.empty()) faults = {Found("render/failed", source.path.generic_string(), 0, 0, error.what())};
    }
    if (faults.empty()) {
        LinkedEngine::RequireOpenGL();
        faults = LinkedEngine::TakeFaults(rehearsed);
    }
    const auto isOfProbe = [](const Diagnostic& fault) { return fault.path.ends_with(kProbeFile); };
    const bool isTried = hasProbe && std::ranges::none_of(faults, isOfProbe);
    std::erase_if(faults, isOfProbe);
    if (faults.empty() && isTried) {
        host::FrameRequest request;
        request.input = std::make_shared<host::World>(kProbeSide, kProbeSide, 32);
        const HostFrame frame = rehearsal.render(request);
        if (frame.result.output && !frame.isInput) ReadTrials(*frame.result.output, effect.corners, effect.findings);
    } else if (faults.empty() && hasProbe && effect.corners.line > 0) {
        effect.findings.push_back({.path = effect.corners.file,
                                   .line = effect.corners.line,
                                   .severity = Diagnostic::Severity::warning,
                                   .text = "gl_Position: whether the corners move together could not be found out; the "
                                           "one at the top right follows from the other three",
                                   .kind = Diagnostic::Kind::shader});
    }
    for (Diagnostic& fault : faults) fault = InAuthorsFile(fault, effect.plan);
    return faults;
}

}  // namespace quillon::cli
