#pragma once

#include <string>

namespace quillon::frei0r {

// Says why frames pass unchanged, on standard error, when the environment has QUILLON_VERBOSE=1; else nothing, as a
// plug-in has no business on its host's terminal. What was said last is not said again: most faults come with every
// frame.
void Report(const std::string& plugin, const std::string& words);

}  // namespace quillon::frei0r
