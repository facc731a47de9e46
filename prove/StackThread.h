#pragma once

#include <cstddef>
#include <functional>

namespace quillon::prove {

// Runs `body`, which throws nothing, to its end on a thread with a native stack of this size.
void RunOnThread(std::size_t stackBytes, const std::function<void()>& body);

}  // namespace quillon::prove
