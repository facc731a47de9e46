#pragma once

#include <memory>

namespace quillon {

// A mutex of the system, private to the process: recursive for the thread that owns it, waited for without limit. On
// Windows the kernel's own, without a name.
class SystemMutex {
public:
    SystemMutex();
    ~SystemMutex();
    SystemMutex(const SystemMutex&) = delete;
    SystemMutex& operator=(const SystemMutex&) = delete;

    // Waits until the mutex is free; true when the calling thread owns it afterwards.
    bool lock();
    // Gives up one lock of the calling thread, which owns the mutex.
    void unlock();

private:
    struct System;
    std::unique_ptr<System> system;
};

}  // namespace quillon
