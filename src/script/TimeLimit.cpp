#include "script/TimeLimit.h"

#include <utility>

#include "script/CallingLines.h"

namespace quillon::TimeLimit {

namespace {

using Clock = std::chrono::steady_clock;

std::chrono::milliseconds allowed{0};
std::optional<Clock::time_point> deadline;
duk_hthread* heap = nullptr;  // what runs until the deadline
std::optional<int> lineAtEnd;

// It stays over until Stop(): Duktape asks again after a script has caught the error.
int Ask() {
    if (!deadline || Clock::now() < *deadline) return 0;
    if (!lineAtEnd) lineAtEnd = CallingLine(heap);
    return 1;
}

int (*check)() = Ask;

}  // namespace

void Set(std::chrono::milliseconds limit) {
    allowed = limit;
}

std::chrono::milliseconds Get() {
    return allowed;
}

void* UserData() {
    return &check;
}

void Start(duk_hthread* ctx) {
    heap = ctx;
    if (allowed.count() > 0) deadline = Clock::now() + allowed;
}

bool IsOver() {
    return lineAtEnd.has_value();
}

std::optional<int> Stop() {
    deadline.reset();
    return std::exchange(lineAtEnd, std::nullopt);
}

}  // namespace quillon::TimeLimit
