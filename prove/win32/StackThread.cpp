#include "StackThread.h"

#include <process.h>
#include <windows.h>

#include "Ground.h"

namespace quillon::prove {

void RunOnThread(std::size_t stackBytes, const std::function<void()>& body) {
    const auto run = [](void* data) -> unsigned {
        (*static_cast<const std::function<void()>*>(data))();
        return 0;
    };
    // Without the flag the size is what is committed at once, and a stack is never smaller than the program asks for.
    const auto thread = reinterpret_cast<HANDLE>(_beginthreadex(nullptr, static_cast<unsigned>(stackBytes), run,
                                                                const_cast<std::function<void()>*>(&body),
                                                                STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr));
    Require(thread != nullptr, "no thread");
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
}

}  // namespace quillon::prove
