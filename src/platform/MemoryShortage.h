#pragma once

namespace quillon {

// Memory was refused where the contract answers with an empty file or no picture, and says no more. The effect module
// asks nobody about it. The tool does: it would rather end than render without that file. Any thread.
void NoteMemoryShortage() noexcept;

// Whether there was one since the last call. Any thread.
bool TakeMemoryShortage() noexcept;

}  // namespace quillon
