#pragma once

#include <mutex>

namespace quillon {

// A mutex of the system, private to the process: recursive for the thread that owns it, waited for without limit.
class SystemMutex {
public:
    SystemMutex() = default;
    SystemMutex(const SystemMutex&) = delete;
    SystemMutex& operator=(const SystemMutex&) = delete;

    // Waits until the mutex is free; true when the calling thread owns it afterwards.
    bool lock();
    // Gives up one lock of the calling thread, which owns the mutex.
    void unlock();

private:
    std::recursive_mutex mutex;
};

}  // namespace quillon
