#pragma once

namespace quillon::test {

// What this process asks of its window system, watched and spoilt on its way.

// How often the hidden surface's buffers were swapped.
int BufferSwaps();

// Whether the window system gives no context from now on.
void RefuseContexts(bool refused);

// From now on the system has no place for a hidden surface. Before the first use of OpenGL in the process.
void LoseWindowSystem();

}  // namespace quillon::test
