#include "cli/sequence/ThreadPool.h"

namespace quillon::cli {

ThreadPool::ThreadPool(unsigned threadCount) {
    for (unsigned i = 0; i < threadCount; ++i) threads.emplace_back([this] { work(); });
}

ThreadPool::~ThreadPool() {
    {
        const std::lock_guard lock(mutex);
        isEnding = true;
        jobs.clear();
    }
    hasChanged.notify_all();
    for (std::thread& thread : threads) thread.join();
}

void ThreadPool::add(std::function<void()> job) {
    {
        const std::lock_guard lock(mutex);
        jobs.push_back(std::move(job));
    }
    hasChanged.notify_one();
}

void ThreadPool::work() {
    for (;;) {
        std::unique_lock lock(mutex);
        hasChanged.wait(lock, [this] { return isEnding || !jobs.empty(); });
        if (jobs.empty()) return;
        const auto job = std::move(jobs.front());
        jobs.pop_front();
        lock.unlock();
        job();
    }
}

}  // namespace quillon::cli
