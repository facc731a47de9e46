#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "cli/preview/PreviewMessages.h"
#include "cli/worker/WorkerGroup.h"

namespace quillon::cli {

// The server's side of a worker that runs an effect, see PreviewMessages.h. Nothing that the effect does reaches this
// process: a worker that crashes or does not answer in time is ended, and its answer is a fault. Any thread.
class EffectProcess {
public:
    using Duration = std::chrono::steady_clock::duration;

    // Starts the worker, which has this long for each answer. Throws a Fault when the system starts none.
    explicit EffectProcess(Duration longestAnswer);

    // Asked now and then while an answer is waited for: true gives up.
    using IsOutdated = std::function<bool()>;

    // The answer to a request; requests of several threads come one after the other. An answer with "faults" when the
    // worker has ended.
    WorkerMessage ask(const WorkerMessage& request, const IsOutdated& isOutdated = {});
    // Asks now for what is asked for next. An equal request gets that answer, once.
    void prepare(const WorkerMessage& request, const IsOutdated& isOutdated);

    // Whoever waits for an answer gets a fault soon, and the worker ends with the object.
    void abandon() { isAbandoned = true; }
    // Whether the worker can be asked. Waits for an answer in hand.
    bool isAlive();

private:
    WorkerMessage exchange(const WorkerMessage& request, const IsOutdated& isOutdated);
    WorkerMessage takeEnd();

    const Duration limit;
    std::mutex mutex;  // of what follows
    WorkerGroup workers;
    nlohmann::json preparedRequest;
    std::optional<WorkerMessage> prepared;
    bool hasEnded = false;
    std::atomic<bool> isAbandoned = false;
};

}  // namespace quillon::cli
