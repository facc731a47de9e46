#include "cli/preview/ScriptClock.h"

#include <utility>

#include "script/Scripting.h"

namespace quillon::cli {

ScriptClock::ScriptClock() {
    Scripting::AddObserver(*this);
}

ScriptClock::~ScriptClock() {
    Scripting::RemoveObserver(*this);
}

double ScriptClock::take() {
    return std::chrono::duration<double, std::milli>(std::exchange(sum, {})).count();
}

void ScriptClock::evaluationBegins(const char*) {
    start = std::chrono::steady_clock::now();
}

void ScriptClock::evaluationEnds(bool) {
    sum += std::chrono::steady_clock::now() - start;
}

}  // namespace quillon::cli
