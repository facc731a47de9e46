#include "platform/SystemMutex.h"

#include <mutex>
#include <system_error>

namespace quillon {

struct SystemMutex::System {
    std::recursive_mutex mutex;
};

SystemMutex::SystemMutex() : system(std::make_unique<System>()) {}
SystemMutex::~SystemMutex() = default;

bool SystemMutex::lock() {
    try {
        system->mutex.lock();
        return true;
    } catch (const std::system_error&) {
        return false;
    }
}

void SystemMutex::unlock() {
    system->mutex.unlock();
}

}  // namespace quillon
