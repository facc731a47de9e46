#include "cli/preview/PreviewWorker.h"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "cli/effect/LinkedEngine.h"
#include "cli/effect/ScriptNotes.h"
#include "cli/preview/EffectPreview.h"
#include "cli/system/SharedMemory.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kMostMemories = 4;

class PreviewWorker {
public:
    WorkerMessage answer(const WorkerMessage& request) {
        try {
            return answerOrThrow(request);
        } catch (const std::exception& failure) {
            return {FailedAnswer(failure, source ? &*source : nullptr)};
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
        if (!preview) throw Fault("", "the effect has not been loaded");
        if (!text.contains("layer")) return messageOf(preview->render(text), text);
        preview->setLayer(text["layer"], request.bytes);
        return {nlohmann::json::object()};
    }

    // With the pixels where the request wants them, if they fit there.
    WorkerMessage messageOf(PreviewFrame frame, const nlohmann::json& request) {
        const std::size_t size = frame.pixels->tightSize();
        if (const auto memory = request.find("memory"); memory != request.end() && size <= memory->at("size")) try {
                frame.pixels->copyTo(sharedMemory(memory->at("name"), memory->at("size")).bytes().first(size));
                frame.text["shared"] = size;
                return {std::move(frame.text)};
            } catch (const std::system_error&) {
                // The pipe works everywhere.
            }
        return {std::move(frame.text), frame.pixels->tightBytes()};
    }

    // To map it for each frame would take as long as to copy a third of the frame.
    const SharedMemory& sharedMemory(const std::string& name, std::size_t size) {
        const auto known = memories.find(name);
        if (known != memories.end()) return known->second;
        std::erase_if(memories, [&](const auto& memory) { return memory.second.bytes().size() != size; });
        if (memories.size() >= kMostMemories) memories.clear();
        return memories.try_emplace(name, name, size).first->second;
    }

    std::optional<EffectSource> source;  // for the lines of faults
    std::optional<EffectPreview> preview;
    std::map<std::string, SharedMemory> memories;  // by name; the server takes them in turns
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
