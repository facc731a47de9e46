#pragma once

#include <cstddef>

namespace quillon::cli {

// The width of the terminal that standard output is, in characters; 0 where it is not one.
std::size_t TerminalColumns();

}  // namespace quillon::cli
