#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillon {

// The text passes that let a fragment shader be written against ordinary RGBA, while textures and targets store the
// host's channel order: reads of textures and `main` are renamed, and small GLSL functions with a swizzle take their
// place. The passes know bytes only: no comments, no strings, no preprocessor. They never fail; what they miss or hit
// wrongly shows in the compiler's log.

struct RewrittenFragment {
    std::string text;
    // Lines that the passes put in front of the author's first line. The author's lines stay whole below them.
    std::size_t addedLines = 0;
};

// All passes, in their order.
RewrittenFragment RewriteFragment(std::string_view source);

// The single passes, in the order in which RewriteFragment runs them. Each works in place; those that put a line of
// GLSL in front of the text say whether they did.
void rewriteMain(std::string& text);
bool rewriteTexture2D(std::string& text);
bool rewriteTexture2DLod(std::string& text);
bool rewriteTextureCube(std::string& text);

// What must be around a word for tokenFinder to accept it.
enum class TokenMode {
    definition,  // white space before; "(" after, white space between allowed
    call,        // white space or one of ( + - / * = before; "(" after, white space between allowed
    type,        // before as call; white space right after, or "." after any white space
};

// The position of the first acceptable occurrence of `word` at or after `start`; npos when there is none. A word at
// position 0 is never accepted.
std::size_t tokenFinder(std::string_view text, std::string_view word, TokenMode mode, std::size_t start);

}  // namespace quillon
