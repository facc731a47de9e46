#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

namespace quillon::cli {

// Threads that run jobs, which start in the order in which they came.
class ThreadPool {
public:
    explicit ThreadPool(unsigned threadCount);
    // Drops the jobs that have not started, and waits for the others.
    ~ThreadPool();
    ThreadPool(const ThreadPool&) = delete;
    ThreadPool& operator=(const ThreadPool&) = delete;

    // What the job throws comes out of the future.
    template <class Job>
    auto run(Job job) -> std::future<decltype(job())> {
        auto task = std::make_shared<std::packaged_task<decltype(job())()>>(std::move(job));
        auto result = task->get_future();
        add([task] { (*task)(); });
        return result;
    }

private:
    void add(std::function<void()> job);
    void work();

    std::mutex mutex;
    std::condition_variable hasChanged;
    std::deque<std::function<void()>> jobs;
    bool isEnding = false;
    std::vector<std::thread> threads;  // last: they use the others
};

}  // namespace quillon::cli
