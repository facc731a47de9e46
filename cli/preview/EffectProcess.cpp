#include "cli/preview/EffectProcess.h"

#include <fmt/format.h>

#include <algorithm>
#include <system_error>
#include <utility>

#include "cli/diagnostics/PrintLine.h"
#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

namespace {

using Clock = std::chrono::steady_clock;

// How long an answer is waited for before others are looked at.
constexpr auto kStep = std::chrono::milliseconds(20);
// A script that runs too long is ended by the engine, which knows its line. This is for what keeps the engine from it.
constexpr auto kGrace = std::chrono::seconds(1);

EffectAnswer Failed(const std::string& text, const std::string& remedy) {
    return {{FailedAnswer({{.text = text, .remedy = remedy, .kind = Diagnostic::Kind::render}}, kFault, nullptr)}};
}

}  // namespace

EffectProcess::EffectProcess(Duration longestAnswer) : limit(longestAnswer), workers(1) {}

EffectAnswer EffectProcess::ask(const WorkerMessage& request, const IsOutdated& isOutdated) {
    const std::lock_guard lock(mutex);
    auto waiting = std::exchange(prepared, {});
    if (waiting && preparedRequest == request.text) return std::move(*waiting);
    return exchange(request, isOutdated);
}

void EffectProcess::prepare(const WorkerMessage& request, const IsOutdated& isOutdated) {
    const std::lock_guard lock(mutex);
    prepared = exchange(request, isOutdated);
    preparedRequest = request.text;
}

bool EffectProcess::isAlive() {
    const std::lock_guard lock(mutex);
    if (!hasEnded && !isAbandoned)
        if (const auto news = workers.wait(0, Clock::now()); news && !news->message) takeEnd();
    return !hasEnded && !isAbandoned;
}

// Null before the first frame, whose size is not known, and where the system gives none: pixels come with the answer.
std::shared_ptr<const SharedMemory> EffectProcess::freeMemory() {
    std::erase_if(memories,
                  [&](const auto& memory) { return memory.use_count() == 1 && memory->bytes().size() != frameBytes; });
    if (frameBytes == 0) return {};
    for (const auto& memory : memories)
        if (memory.use_count() == 1) return memory;
    try {
        return memories.emplace_back(std::make_shared<SharedMemory>(frameBytes));
    } catch (const std::system_error&) {
        return {};
    }
}

EffectAnswer EffectProcess::exchange(WorkerMessage request, const IsOutdated& isOutdated) {
    if (hasEnded) return Failed("the effect's process has ended", "save a file of the effect to start it anew");
    std::shared_ptr<const SharedMemory> memory;
    if (request.text.contains("frame")) memory = freeMemory();
    if (memory) request.text["memory"] = {{"name", memory->name()}, {"size", memory->bytes().size()}};
    workers.send(0, request);
    EffectAnswer answer = wait(isOutdated);
    if (const auto shared = answer.message.text.find("shared"); memory && shared != answer.message.text.end()) {
        answer.memory = std::move(memory);
        answer.shared = std::min(shared->get<std::size_t>(), answer.memory->bytes().size());
    }
    if (!answer.pixels().empty()) frameBytes = answer.pixels().size();
    return answer;
}

EffectAnswer EffectProcess::wait(const IsOutdated& isOutdated) {
    const auto deadline = Clock::now() + limit + kGrace;
    for (;;) {
        if (auto answer = workers.wait(0, Clock::now() + kStep)) {
            if (!answer->message) return takeEnd();
            if (const auto notes = answer->message->text.find("notes"); notes != answer->message->text.end())
                for (const nlohmann::json& note : *notes) PrintWords(note.get<std::string>());
            return {std::move(*answer->message)};
        }
        if (!isAbandoned && isOutdated && isOutdated()) isAbandoned = true;
        if (isAbandoned) return Failed("a newer state of the effect takes over", "");
        if (Clock::now() < deadline) continue;
        workers.kill(0);
        while (const auto answer = workers.wait(0))
            if (!answer->message) break;
        takeEnd();
        const double seconds = std::chrono::duration<double>(limit).count();
        return Failed(fmt::format("no answer within {:.3g} seconds, so that its process was ended", seconds),
                      "look for a shader or a picture that takes that long, or allow more with --time-limit");
    }
}

EffectAnswer EffectProcess::takeEnd() {
    hasEnded = true;
    const WorkerGroup::End end = workers.endOf(0);
    std::string words = end.words;
    while (words.ends_with('\n')) words.pop_back();
    const std::string how =
        end.status < 0 ? "was killed or crashed" : fmt::format("ended with exit status {}", end.status);
    return Failed(fmt::format("the effect's process {}{}{}", how, words.empty() ? "" : ": ", words), "");
}

}  // namespace quillon::cli
