#pragma once

namespace quillon::test {

// What this process asks of its window system, refused on its way.

// Whether the window system gives no context from now on.
void RefuseContexts(bool refused);

// From now on the system has no place for a hidden surface. Before the first use of OpenGL in the process.
void LoseWindowSystem();

}  // namespace quillon::test
