#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/World.h"

namespace quillon::cli {

// A render target of the engine that is linked into the tool.
struct ListedTarget {
    std::uint32_t id = 0;
    std::string variable;  // of the script, as "trail", "atlas.light" or "rooms[1]"; empty when none holds it
    std::uint32_t width = 0, height = 0, bitDepth = 0;
};

// All that are live, in the order in which they were made unless one was released. An instance's output is one of them.
std::vector<ListedTarget> ListTargets();
// The two halves of it: the targets without variables, and then the search of the script for them, which takes longer.
std::vector<ListedTarget> LiveTargets();
std::vector<ListedTarget> WithVariables(std::vector<ListedTarget> targets);

// What was last drawn into a target, which goes by its variable or its number in the list, from 1: the row that is last
// in an output that comes out upright is last. Targets of 15 bits give 16. Throws WrongCommandLine, with the list, for
// one that is not there, and a Fault when it cannot be read.
std::shared_ptr<host::World> ReadTarget(const std::string& name);

}  // namespace quillon::cli
