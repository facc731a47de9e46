#pragma once

#include <condition_variable>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

namespace quillon::frei0r {

// The thread on which the engine works for all instances of the module. A host's thread may have a GL context current,
// of EGL or of another window system, and the engine makes its own current: on a thread that no host uses there is
// nothing to put aside and to bring back.
class EngineThread {
public:
    // The thread that instances have now, or a new one. It ends with the last pointer to it. Called under the entry
    // gate. Throws std::system_error when the system has no thread left.
    static std::shared_ptr<EngineThread> Shared();

    EngineThread();
    ~EngineThread();
    EngineThread(const EngineThread&) = delete;
    EngineThread& operator=(const EngineThread&) = delete;

    // Runs the call there and returns when it is done. Throws what the call throws. One caller at a time.
    void run(const std::function<void()>& call);

    // For a call that runs there: does each of the pieces 0 to count - 1 once, with the help of the thread that waits
    // in run(), and returns when all are done. A piece must not throw.
    void share(std::uint32_t count, const std::function<void(std::uint32_t)>& piece);

private:
    // What is left to do of the pieces that are shared.
    struct Pieces {
        const std::function<void(std::uint32_t)>* piece = nullptr;
        std::uint32_t next = 0;
        std::uint32_t count = 0;
        std::uint32_t unfinished = 0;

        bool areLeft() const { return next < count; }
    };

    void work();
    // Takes pieces until none is left. Others may still work on theirs then.
    void doPieces(std::unique_lock<std::mutex>& lock);

    std::mutex mutex;
    std::condition_variable changed;
    const std::function<void()>* pending = nullptr;  // until it is done
    Pieces pieces;
    std::exception_ptr fault;
    bool isEnding = false;
    std::thread thread;  // last: it uses the others
};

}  // namespace quillon::frei0r
