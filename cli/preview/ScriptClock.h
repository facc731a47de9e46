#pragma once

#include <chrono>

#include "script/ScriptObserver.h"

namespace quillon::cli {

// How long the script has run. On the thread that runs it.
class ScriptClock final : public ScriptObserver {
public:
    ScriptClock();
    ~ScriptClock();
    ScriptClock(const ScriptClock&) = delete;
    ScriptClock& operator=(const ScriptClock&) = delete;

    // Milliseconds since the last call. What GL has only been asked for meanwhile is not among them.
    double take();

    void evaluationBegins(const char* text) override;
    void evaluationEnds(bool hasFailed) override;

private:
    std::chrono::steady_clock::time_point start;
    std::chrono::steady_clock::duration sum{};
};

}  // namespace quillon::cli
