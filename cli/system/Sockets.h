#pragma once

#include <cstdint>

namespace quillon::cli {

// Before a socket gets its address: no other socket may have the same one at the same time, as some systems allow.
void RequireOwnAddress(std::uintptr_t socket);

}  // namespace quillon::cli
