#include "cli/worker/WorkerChannel.h"

#include <cstdlib>
#include <thread>

#include "cli/diagnostics/ToolError.h"
#include "platform/TemporaryPath.h"

namespace quillon::cli {

namespace {

// Nobody wants what is being done. Threads may be anywhere, so that no destructor runs.
[[noreturn]] void EndOrphan() {
    RemoveTemporaries();
    std::_Exit(kFault);
}

}  // namespace

// Never destroyed: a thread waits for requests to the process's end.
WorkerChannel& WorkerChannel::Open() {
    static WorkerChannel* const kChannel = [] {
        auto* const channel = new WorkerChannel;
        std::thread([channel] { channel->listen(); }).detach();
        return channel;
    }();
    return *kChannel;
}

void WorkerChannel::listen() {
    for (;;) {
        auto request = ReadMessage([this](std::span<std::byte> bytes) { return pipe.read(bytes); });
        if (!request) EndOrphan();
        const std::lock_guard lock(mutex);
        if (request->text.value("stop", false))
            hasStopped = true;
        else
            requests.push_back(std::move(*request));
        hasChanged.notify_all();
    }
}

std::optional<WorkerMessage> WorkerChannel::receive() {
    std::unique_lock lock(mutex);
    hasChanged.wait(lock, [this] { return hasStopped || !requests.empty(); });
    if (hasStopped) return {};
    WorkerMessage request = std::move(requests.front());
    requests.pop_front();
    return request;
}

bool WorkerChannel::isStopped() const {
    const std::lock_guard lock(mutex);
    return hasStopped;
}

void WorkerChannel::answer(const WorkerMessage& message) {
    const std::lock_guard lock(answerMutex);
    if (!WriteMessage([this](std::span<const std::byte> bytes) { return pipe.write(bytes); }, message)) EndOrphan();
}

}  // namespace quillon::cli
