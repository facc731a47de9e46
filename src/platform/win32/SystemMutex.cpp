#include "platform/SystemMutex.h"

#include <windows.h>

namespace quillon {

struct SystemMutex::System {
    // A handle that could not be made stays null, and every wait for it fails.
    HANDLE handle = CreateMutexW(nullptr, FALSE, nullptr);
};

SystemMutex::SystemMutex() : system(std::make_unique<System>()) {}

SystemMutex::~SystemMutex() {
    CloseHandle(system->handle);
}

bool SystemMutex::lock() {
    return WaitForSingleObject(system->handle, INFINITE) == WAIT_OBJECT_0;
}

void SystemMutex::unlock() {
    ReleaseMutex(system->handle);
}

}  // namespace quillon
