#pragma once

namespace quillon {

// Loads the GL entry points from the driver of the context that is current on the calling thread. A pointer that the
// driver does not give, or all of them when no context is current, stays callable: it does nothing, returns 0 and
// leaves its outputs as they were. So no caller tests a pointer.
void LoadGLEntryPoints();

}  // namespace quillon
