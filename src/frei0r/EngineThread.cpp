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
    changed.wait(lock, [this] { return !pending; });
    if (fault) std::rethrow_exception(std::exchange(fault, nullptr));
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
