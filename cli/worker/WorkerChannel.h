#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>

#include "cli/system/ParentPipe.h"
#include "cli/worker/WorkerMessage.h"

namespace quillon::cli {

// The worker's side of its messages. One a process, which it takes standard input and output of, to the process's end.
class WorkerChannel {
public:
    static WorkerChannel& Open();

    // The next request, as it comes. Nothing after a request to stop.
    std::optional<WorkerMessage> receive();
    // Whether the parent has asked for an end after the work in hand. Any thread.
    bool isStopped() const;
    // Any thread. Without a parent the process ends.
    void answer(const WorkerMessage& message);

private:
    WorkerChannel() = default;
    void listen();

    ParentPipe pipe;
    mutable std::mutex mutex;
    std::condition_variable hasChanged;
    std::deque<WorkerMessage> requests;
    bool hasStopped = false;
    std::mutex answerMutex;
};

}  // namespace quillon::cli
