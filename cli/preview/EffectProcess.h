#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "cli/preview/PreviewMessages.h"
#include "cli/system/SharedMemory.h"
#include "cli/worker/WorkerGroup.h"

namespace quillon::cli {

// What a worker has answered. The pixels of a frame belong to the answer, or are in memory that no other answer has
// while this one lives.
struct EffectAnswer {
    std::span<const std::byte> pixels() const {
        return memory ? std::span<const std::byte>(memory->bytes().first(shared)) : message.bytes;
    }
    bool hasFailed() const { return message.text.contains("faults"); }

    WorkerMessage message = {};
    std::shared_ptr<const SharedMemory> memory = {};
    std::size_t shared = 0;
};

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
    EffectAnswer ask(const WorkerMessage& request, const IsOutdated& isOutdated = {});
    // Asks now for what is asked for next. An equal request gets that answer, once.
    void prepare(const WorkerMessage& request, const IsOutdated& isOutdated);

    // Whoever waits for an answer gets a fault soon, and the worker ends with the object.
    void abandon() { isAbandoned = true; }
    // Whether the worker can be asked. Waits for an answer in hand.
    bool isAlive();

private:
    EffectAnswer exchange(WorkerMessage request, const IsOutdated& isOutdated);
    EffectAnswer wait(const IsOutdated& isOutdated);
    EffectAnswer takeEnd();
    std::shared_ptr<const SharedMemory> freeMemory();

    const Duration limit;
    std::mutex mutex;  // of what follows
    WorkerGroup workers;
    nlohmann::json preparedRequest;
    std::optional<EffectAnswer> prepared;
    bool hasEnded = false;
    // For the pixels of frames, each as large as the last one. Those of answers that live are in use.
    std::vector<std::shared_ptr<const SharedMemory>> memories;
    std::size_t frameBytes = 0;
    std::atomic<bool> isAbandoned = false;
};

}  // namespace quillon::cli
