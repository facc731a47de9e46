#pragma once

#include <string>
#include <vector>

namespace quillon::cli {

// One thing that the tool makes use of on this machine.
struct MachinePart {
    enum class State {
        well,
        absent,  // some things cannot be done
        broken   // effects cannot be rendered or packed
    };
    std::string name;
    State state = State::well;
    std::string text = {};    // what there is, or what is wrong
    std::string remedy = {};  // what the user can do; empty when all is well
};

// Looks at graphics, templates, programs and folders. Opens a GL context for that.
std::vector<MachinePart> ExamineMachine();

// The graphics driver, with its limits.
MachinePart ExamineGraphics();

}  // namespace quillon::cli
