#include "cli/preview/PreviewWorker.h"

#include <chrono>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "cli/effect/LinkedEngine.h"
#include "cli/effect/ScriptNotes.h"
#include "cli/preview/EffectPreview.h"

namespace quillon::cli {

namespace {

class PreviewWorker {
public:
    WorkerMessage answer(const WorkerMessage& request) {
        try {
            return answerOrThrow(request);
        } catch (const ToolError& error) {
            return {FailedAnswer(error.faults, error.exitStatus, source ? &*source : nullptr)};
        } catch (const std::bad_alloc&) {
            return Failed("out of memory");
        } catch (const std::exception& error) {
            return Failed(error.what());
        }
    }

private:
    WorkerMessage answerOrThrow(const WorkerMessage& request) {
        const nlohmann::json& text = request.text;
        if (text.contains("preview")) {
            LinkedEngine::LimitScripts(std::chrono::milliseconds(text["milliseconds"]));
            const PreviewSetup setup = SetupOf(text["preview"]);
            source = ReadEffectSource(setup.effect);
            ThrowIfAny(CheckSource(*source));
            preview.emplace(setup, *source);
            return {preview->describe()};
        }
        if (!preview) return Failed("the effect has not been loaded");
        if (!text.contains("layer")) return preview->render(text);
        preview->setLayer(text["layer"], request.bytes);
        return {nlohmann::json::object()};
    }

    static WorkerMessage Failed(const std::string& text) {
        return {FailedAnswer({{.text = text, .kind = Diagnostic::Kind::tool}}, kFault, nullptr)};
    }

    std::optional<EffectSource> source;  // for the lines of faults
    std::optional<EffectPreview> preview;
};

}  // namespace

void RunPreviewWorker(WorkerChannel& channel, const WorkerMessage& first) {
    PreviewWorker worker;
    std::vector<std::string> notes;
    SetNoteListener([&](const ScriptNote& note) { notes.push_back(FormatNote(note)); });
    for (std::optional<WorkerMessage> request = first; request; request = channel.receive()) {
        WorkerMessage answer = worker.answer(*request);
        if (!notes.empty()) answer.text["notes"] = std::exchange(notes, {});
        channel.answer(answer);
    }
}

}  // namespace quillon::cli
