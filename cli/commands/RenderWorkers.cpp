#include "cli/commands/RenderWorkers.h"

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "cli/commands/Renderer.h"
#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/Rules.h"
#include "cli/effect/ScriptNotes.h"
#include "cli/worker/WorkerGroup.h"

// The request: "arguments", those of this command line; "frames", those of this worker, in order; "probe", the first
// frame of the next worker, which is among them. The answers: "note", a line that the script prints; "warnings", when
// the script has started; for each frame "frame", "times", "form" and the bytes of EncodedFrame; "first" and "probe",
// digests of the first picture and of the one that the next worker renders too; and "faults" with "status".

namespace quillon::cli {

namespace {

using Message = nlohmann::json;

// The same for equal pictures, in all processes of this program.
std::uint64_t DigestOf(const Picture& picture) {
    return std::hash<std::string_view>()({reinterpret_cast<const char*>(picture.pixels.data()), picture.pixels.size()});
}

struct Piece {
    std::vector<std::int32_t> frames;
    std::optional<std::int32_t> probe;  // the first frame of the next worker
    bool hasStarted = false;
    std::size_t done = 0;
    std::optional<std::uint64_t> first, probed;  // digests
    std::optional<ToolError> fault;
};

std::vector<Piece> Split(const std::vector<std::int32_t>& frames, std::size_t count, bool isInTurn) {
    std::vector<Piece> pieces(count);
    for (std::size_t i = 0; i < frames.size(); ++i)
        pieces[isInTurn ? i % count : i * count / frames.size()].frames.push_back(frames[i]);
    for (std::size_t i = 0; i + 1 < count; ++i) pieces[i].probe = pieces[i + 1].frames.front();
    return pieces;
}

class WorkersRun {
public:
    WorkersRun(const RenderOptions& renderOptions, const RenderPlan& renderPlan)
        : options(renderOptions),
          plan(renderPlan),
          isInTurn(!IsPictureOutput(options.output)),
          output(MakeFrameOutput(plan.outputOptions())),
          pieces(Split(plan.frames, std::min<std::size_t>(options.jobs, plan.frames.size()), isInTurn)),
          workers(pieces.size()),
          progress(options.progress, plan.frames.size()) {}

    void run() {
        plan.announce(done);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            Message request = {{"arguments", options.arguments}, {"frames", pieces[i].frames}};
            if (pieces[i].probe) request["probe"] = *pieces[i].probe;
            workers.send(i, {request});
        }
        // Frames of one output are taken in their order, so that a worker that is ahead waits.
        while (auto answer = workers.wait(isInTurn && !isStopping && done < plan.frames.size()
                                              ? std::optional(done % pieces.size())
                                              : std::nullopt))
            take(answer->worker, std::move(answer->message));
        progress.print(isStopping ? "" : output->finish());
        throwFaults();
        warnOfState();
    }

private:
    void take(std::size_t worker, std::optional<WorkerMessage> message) {
        if (!message) return takeEnd(worker);
        Piece& piece = pieces[worker];
        const Message& text = message->text;
        // Every worker starts the script, and says the same then.
        if (text.contains("note") && (worker == 0 || piece.hasStarted))
            PrintWordsOverBar(text["note"].get<std::string>());
        if (text.contains("warnings")) piece.hasStarted = true;
        if (text.contains("warnings"))
            for (const Diagnostic& warning : DiagnosticsOf(text["warnings"]))
                if (said.insert(FormatDiagnostic(warning)).second) PrintDiagnostics({warning});
        if (text.contains("first")) piece.first = text["first"].get<std::uint64_t>();
        if (text.contains("probe")) piece.probed = text["probe"].get<std::uint64_t>();
        if (text.contains("faults")) {
            piece.fault = ToolError(text["status"], DiagnosticsOf(text["faults"]));
            stop();
        }
        if (text.contains("frame")) takeFrame(piece, text, std::move(message->bytes));
    }

    void takeFrame(Piece& piece, const Message& text, std::vector<std::byte> bytes) {
        ++piece.done;
        if (isInTurn && isStopping) return;  // a frame before it may be missing
        const std::int32_t frame = text["frame"];
        const Message& times = text["times"];
        const Message& form = text["form"];
        std::string path = output->add(frame, {{form[0], form[1], form[2]}, std::move(bytes)});
        progress.count(frame, path, {times[0], times[1], times[2]});
        paths[frame] = std::move(path);
        plan.announce(++done);
        printPaths();
    }

    // Those before which no frame is missing that may still come.
    void printPaths() {
        for (; nextPath < plan.frames.size() && paths.contains(plan.frames[nextPath]); ++nextPath)
            progress.print(paths[plan.frames[nextPath]]);
    }

    void takeEnd(std::size_t worker) {
        const WorkerGroup::End end = workers.endOf(worker);
        const Piece& piece = pieces[worker];
        if (piece.fault || piece.done == piece.frames.size() || (isStopping && end.status == 0)) return;
        std::string words = end.words;
        while (words.ends_with('\n')) words.pop_back();
        const std::string how = end.status < 0 ? "was killed or crashed" : fmt::format("ended with {}", end.status);
        const std::size_t left = piece.frames.size() - piece.done;
        dead.push_back({.text = fmt::format(
                            "a process of -j {}, which had frames {} to {} before it and has not written "
                            "the last {}{}{}",
                            how, piece.frames.front(), piece.frames.back(), left, words.empty() ? "" : ": ", words),
                        .remedy = isInTurn ? "" : "render them with --resume",
                        .kind = Diagnostic::Kind::tool});
        stop();
    }

    // Each worker finishes the frames that it has begun.
    void stop() {
        if (isStopping) return;
        isStopping = true;
        for (std::size_t i = 0; i < pieces.size(); ++i) workers.send(i, {{{"stop", true}}});
    }

    void throwFaults() {
        if (!isStopping) return;
        for (; nextPath < plan.frames.size(); ++nextPath)
            if (const auto path = paths.find(plan.frames[nextPath]); path != paths.end()) progress.print(path->second);
        const auto failed = std::ranges::find_if(pieces, [](const Piece& piece) { return piece.fault.has_value(); });
        ToolError error = failed != pieces.end() ? *failed->fault : ToolError(kFault, {});
        error.faults.insert(error.faults.end(), dead.begin(), dead.end());
        throw error;
    }

    // One frame that two workers have rendered, one after the frames before it and the other as its first.
    void warnOfState() const {
        for (std::size_t i = 0; i + 1 < pieces.size(); ++i) {
            if (!pieces[i].probed || pieces[i].probed == pieces[i + 1].first) continue;
            PrintDiagnostics({Found("render/frame-order", options.effect.string(), 0, 0,
                                    fmt::format("frame {} depends on what was rendered before it, so that -j gives "
                                                "other pictures than one process",
                                                pieces[i + 1].frames.front()),
                                    "leave -j out")});
            return;
        }
    }

    const RenderOptions& options;
    const RenderPlan& plan;
    const bool isInTurn;
    const std::unique_ptr<FrameOutput> output;
    std::vector<Piece> pieces;
    WorkerGroup workers;
    Progress progress;
    std::map<std::int32_t, std::string> paths;
    std::size_t nextPath = 0;
    std::size_t done = 0;
    bool isStopping = false;
    std::set<std::string> said;
    Diagnostics dead;
};

}  // namespace

int RenderInWorkers(const RenderOptions& options) {
    RenderPlan plan(options);
    plan.requireInputs();
    WorkersRun(options, plan).run();
    return 0;
}

int RenderForParent(WorkerChannel& channel, const WorkerMessage& request, RenderOptions options) {
    std::vector<std::int32_t> frames = request.text.at("frames");
    const std::int32_t first = frames.front(), probe = request.text.value("probe", -1);
    // In its place: a movie is read from its start to its end.
    if (probe >= 0) frames.insert(std::ranges::upper_bound(frames, probe), probe);
    options.assignedFrames = frames;
    SetNoteListener([&](const ScriptNote& note) { channel.answer({{{"note", FormatNote(note)}}}); });
    Renderer renderer(options);
    channel.answer({{{"warnings", JsonOf(renderer.warnings())}}});
    const std::unique_ptr<FrameOutput> output = MakeFrameOutput(renderer.frames().outputOptions());
    renderer.run({.encode =
                      [&](std::int32_t frame, const Picture& picture) {
                          if (frame == first) channel.answer({{{"first", DigestOf(picture)}}});
                          if (frame == probe) channel.answer({{{"probe", DigestOf(picture)}}});
                          return frame == probe ? EncodedFrame() : output->encode(frame, picture);
                      },
                  .report =
                      [&](std::int32_t frame, const FrameTimes& times, EncodedFrame encoded) {
                          if (frame == probe) return;
                          const auto& [width, height, depth] = encoded.form;
                          channel.answer({{{"frame", frame},
                                           {"times", {times.read, times.render, times.write}},
                                           {"form", {width, height, depth}}},
                                          std::move(encoded.bytes)});
                      },
                  .isStopped = [&] { return channel.isStopped(); }});
    return 0;
}

}  // namespace quillon::cli
