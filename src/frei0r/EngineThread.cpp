#include "frei0r/EngineThread.h"

#include <utility>

namespace quillon::frei0r {

std::shared_ptr<EngineThread> EngineThread::Shared() {
    // In a cell that is never freed: a host thread may still be inside when the process ends.
    static auto* const kShared = new std::weak_ptr<EngineThread>;
    auto present = kShared->lock();
    if (!present) *kShared = present = std::make_shared<EngineThread>();
    return present;
}

EngineThread::EngineThread() : thread([this] { work(); }) {}

EngineThread::~EngineThread() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
    }
    changed.notify_all();
    thread.join();
}

void EngineThread::run(const std::function<void()>& call) {
    std::unique_lock lock(mutex);
    pending = &call;
    changed.notify_all();
    while (pending) {
        changed.wait(lock, [this] { return !pending || pieces.areLeft(); });
        doPieces(lock);
    }
    if (fault) std::rethrow_exception(std::exchange(fault, nullptr));
}

void EngineThread::share(std::uint32_t count, const std::function<void(std::uint32_t)>& piece) {
    std::unique_lock lock(mutex);
    pieces = {&piece, 0, count, count};
    if (count > 1) changed.notify_all();
    doPieces(lock);
    changed.wait(lock, [this] { return pieces.unfinished == 0; });
}

void EngineThread::doPieces(std::unique_lock<std::mutex>& lock) {
    while (pieces.areLeft()) {
        const std::uint32_t taken = pieces.next++;
        lock.unlock();
        (*pieces.piece)(taken);
        lock.lock();
        if (--pieces.unfinished == 0) changed.notify_all();
    }
}

void EngineThread::work() {
    std::unique_lock lock(mutex);
    while (true) {
        changed.wait(lock, [this] { return pending || isEnding; });
        if (!pending) return;
        lock.unlock();
        std::exception_ptr thrown;
        try {
            (*pending)();
        } catch (...) {
            thrown = std::current_exception();
        }
        lock.lock();
        fault = std::move(thrown);
        pending = nullptr;
        changed.notify_all();
    }
}

}  // namespace quillon::frei0r
