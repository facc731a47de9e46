#pragma once

#include <string>

namespace quillon {

struct SequenceHandle;

namespace frei0r {

// An effect instance in the module's engine. The engine starts with the first of them and ends with the last, and so
// does all memory that the effect holds. Made, used and ended under the entry gate, on a thread without a GL context.
class EngineInstance {
public:
    // `plugin` is the name for reports.
    explicit EngineInstance(const std::string& plugin);
    ~EngineInstance();
    EngineInstance(const EngineInstance&) = delete;
    EngineInstance& operator=(const EngineInstance&) = delete;

    // Null when the engine could not be started: no package in the module, or no OpenGL on the machine.
    SequenceHandle* sequence() const { return handle; }

private:
    SequenceHandle* handle = nullptr;
};

// The script errors since the last call, one a line.
std::string TakeScriptErrors();

}  // namespace frei0r

}  // namespace quillon
