#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/worker/WorkerMessage.h"

namespace quillon::cli {

// The parent's side: workers that run beside this process. One thread uses it.
class WorkerGroup {
public:
    // Starts this many, of this program or another one that speaks as `quillon worker` does. Throws a Fault when the
    // system starts none.
    explicit WorkerGroup(std::size_t count, const std::filesystem::path& program = {});
    // Ends those that still run.
    ~WorkerGroup();
    WorkerGroup(const WorkerGroup&) = delete;
    WorkerGroup& operator=(const WorkerGroup&) = delete;

    // False when the worker has ended, or is ended since it cannot be asked; wait() then says so too.
    bool send(std::size_t worker, const WorkerMessage& request);

    // What has come from a worker.
    struct Answer {
        std::size_t worker = 0;
        std::optional<WorkerMessage> message;  // nothing: the worker has ended, which comes once and last
    };
    using Deadline = std::chrono::steady_clock::time_point;
    // The next answer, of this worker only when one is given. Nothing when the deadline passes first, and when all that
    // could answer have ended. A worker whose answers are not taken waits after a few.
    std::optional<Answer> wait(std::optional<std::size_t> worker = {}, std::optional<Deadline> deadline = {});

    // Ends a worker at once, for one that does not answer in time. Its end comes as an answer.
    void kill(std::size_t worker);

    // How a worker has ended.
    struct End {
        int status = 0;     // its exit status; -1 when a signal ended it
        std::string words;  // the last of what it has printed on standard error
    };
    // Of a worker whose end has come as an answer.
    End endOf(std::size_t worker);

private:
    struct Worker;
    struct Mail;
    std::unique_ptr<Mail> mail;
    std::vector<std::unique_ptr<Worker>> workers;
};

}  // namespace quillon::cli
