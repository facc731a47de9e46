#include "platform/SystemMutex.h"

#include <system_error>

namespace quillon {

bool SystemMutex::lock() {
    try {
        mutex.lock();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void SystemMutex::unlock() {
    mutex.unlock();
}

}  // namespace quillon
