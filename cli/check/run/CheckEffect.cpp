#include "cli/check/run/CheckEffect.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <span>
#include <tuple>
#include <utility>

#include "cli/check/run/FindingList.h"
#include "cli/check/run/Silencing.h"
#include "cli/check/run/Trial.h"
#include "cli/diagnostics/Rules.h"
#include "cli/worker/WorkerGroup.h"

namespace quillon::cli {

namespace {

using Clock = std::chrono::steady_clock;

// One scene, seen from outside of its process.
class SceneRun {
public:
    SceneRun(const CheckSettings& checkSettings, const CheckListener& checkListener, FindingList& findingList)
        : settings(checkSettings), listener(checkListener), findings(findingList), workers(1) {}

    // Of each frame that two scenes render, its digest in the first.
    using Digests = std::map<std::int32_t, std::uint64_t>;

    void run(std::size_t scene, Digests& digests) {
        name = Scenes()[scene].name;
        const std::string path = settings.effect.string();
        const auto bytes = std::as_bytes(std::span(path));
        workers.send(0, {{{"check", scene}, {"level", settings.level}, {"milliseconds", settings.timeLimit.count()}},
                         {bytes.begin(), bytes.end()}});
        while (!hasEnded) {
            // A step may run two parts of the script, and a shader has no limit.
            const auto deadline = Clock::now() + 2 * settings.timeLimit + std::chrono::seconds(2);
            const auto answer = workers.wait(0, deadline);
            if (!answer) return endHanging();
            if (!answer->message) return reportCrash();
            take(answer->message->text, digests);
        }
    }

private:
    void take(const nlohmann::json& text, Digests& digests) {
        if (text.contains("pass")) pass = DiagnosticsOf(text["pass"]);
        if (text.contains("step")) {
            step = text["step"];
            pass.clear();
            if (listener.step) listener.step(fmt::format("{}: {}", name, step));
        }
        if (text.contains("note") && listener.note) listener.note(text["note"]);
        if (text.contains("findings")) findings.add(DiagnosticsOf(text["findings"]), text["situation"]);
        if (text.contains("frame")) compare(text["frame"], text["digest"], digests);
        if (text.contains("faults")) throw ToolError(text["status"], DiagnosticsOf(text["faults"]));
        hasEnded = text.contains("done");
    }

    void compare(std::int32_t frame, std::uint64_t digest, Digests& digests) {
        if (digests.emplace(frame, digest).first->second == digest) return;
        report("render/frame-order", fmt::format("frame {} is another one when it is rendered by itself", frame));
    }

    void endHanging() {
        workers.kill(0);
        const double seconds = std::chrono::duration<double>(settings.timeLimit).count();
        if (pass.empty()) return report("render/never-ends", fmt::format("{}: no end after {} s", step, seconds));
        pass.front().text = fmt::format("{}: {} has not ended after {} s", step, pass.front().text, seconds);
        findings.add(pass, "");
    }

    // What was found before explains an end as by an id of nothing.
    void reportCrash() {
        const WorkerGroup::End end = workers.endOf(0);
        if (findings.hasErrors()) return;
        report("render/crash", end.words.empty() ? fmt::format("{}: the process crashed", step)
                                                 : fmt::format("{}: the process crashed: {}", step, end.words));
    }

    void report(const char* rule, const std::string& text) {
        findings.add({Found(rule, settings.effect.generic_string(), 0, 0, text)}, "");
    }

    const CheckSettings& settings;
    const CheckListener& listener;
    FindingList& findings;
    WorkerGroup workers;
    const char* name = "";
    std::string step = "the start";
    Diagnostics pass;  // that is being drawn
    bool hasEnded = false;
};

}  // namespace

bool CheckedEffect::hasErrors() const {
    return std::ranges::any_of(
        findings, [](const Diagnostic& finding) { return finding.severity == Diagnostic::Severity::error; });
}

CheckedEffect CheckEffect(const CheckSettings& settings, const CheckListener& listener) {
    CheckedEffect checked;
    FindingList findings(settings.level);
    try {
        checked.source = ReadEffectSource(settings.effect);
    } catch (const ToolError& error) {
        if (error.faults.front().kind == Diagnostic::Kind::tool) throw;
        checked.source.path = settings.effect;
        checked.findings = error.faults;
        return checked;
    }
    SceneRun::Digests digests;
    for (std::size_t scene = 0; scene < Scenes().size() && !findings.hasErrors(); ++scene)
        if (Scenes()[scene].level <= settings.level) SceneRun(settings, listener, findings).run(scene, digests);
    checked.findings = InOrder(Silence(checked.source, findings.take()));
    return checked;
}

}  // namespace quillon::cli
