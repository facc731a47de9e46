#include "cli/check/run/CheckWorker.h"

#include <chrono>
#include <new>
#include <string>

#include "cli/check/run/Trial.h"
#include "cli/effect/LinkedEngine.h"
#include "cli/effect/ScriptFaults.h"
#include "cli/effect/ScriptNotes.h"
#include "cli/system/System.h"

namespace quillon::cli {

namespace {

class Reports final : public TrialReports {
public:
    explicit Reports(WorkerChannel& channelToParent) : channel(channelToParent) {}

    void step(const std::string& words) override { send({{"step", words}}); }
    void pass(const Diagnostics& unlessItEnds) override { send({{"pass", JsonOf(unlessItEnds)}}); }
    void findings(const Diagnostics& found, const std::string& situation) override {
        send({{"findings", JsonOf(found)}, {"situation", situation}});
    }
    void frame(std::int32_t number, std::uint64_t digest) override { send({{"frame", number}, {"digest", digest}}); }

    void note(const std::string& line) { send({{"note", line}}); }
    void fail(const ToolError& error) { send({{"faults", JsonOf(error.faults)}, {"status", error.exitStatus}}); }
    void end() { send({{"done", true}}); }

private:
    void send(nlohmann::json::initializer_list_t members) { channel.answer({nlohmann::json::object(members)}); }

    WorkerChannel& channel;
};

void Play(Reports& reports, const WorkerMessage& request) {
    const std::string path(reinterpret_cast<const char*>(request.bytes.data()), request.bytes.size());
    const Scene& scene = Scenes()[request.text.at("check").get<std::size_t>()];
    LinkedEngine::LimitScripts(std::chrono::milliseconds(request.text.at("milliseconds")));
    Trial trial(ReadEffectSource(path), request.text.at("level"), reports);
    scene.play(trial);
}

}  // namespace

void RunCheckWorker(WorkerChannel& channel, const WorkerMessage& request) {
    DoWithoutShaderCache();
    Reports reports(channel);
    SetNoteListener([&](const ScriptNote& note) { reports.note(FormatNote(note)); });
    ListenToLastFault([](const Diagnostic& fault) { Reports(WorkerChannel::Open()).findings({fault}, ""); });
    try {
        Play(reports, request);
        reports.end();
    } catch (const ToolError& error) {
        reports.fail(error);
    } catch (const std::bad_alloc&) {
        reports.fail(Fault("", "out of memory", "close other programs, or check with a lower --level"));
    }
    SetNoteListener({});
}

}  // namespace quillon::cli
