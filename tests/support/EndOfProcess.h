#pragma once

#if !defined(_WIN32)
#include <sys/wait.h>

#include <csignal>
#endif

namespace quillon::test {

// Whether a process of this status, as a death test has it, was ended by FailFast().
inline bool EndedOnPurpose(int status) {
#if defined(_WIN32)
    return static_cast<unsigned>(status) == 0xC0000602;  // a fail-fast exception
#else
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
#endif
}

}  // namespace quillon::test
