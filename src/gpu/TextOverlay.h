#pragma once

#include <string>

namespace quillon {

// Draws the text with a bitmap font, lines from the top down, into a target of no size that belongs to nobody: the
// text reaches no output. It is what a frame gets instead of the script while a shader does not compile; the frame
// that goes to the host is the output target as it was. Needs the GL lock.
void textOverlay(const std::string& text);

// Forgets the font's display lists without a call of GL. To be called after the end of the context that has them, so
// that the next one gets its own.
void ForgetTextOverlay();

}  // namespace quillon
