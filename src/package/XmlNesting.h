#pragma once

#include <string>

namespace quillon {

// The deepest nesting that the engine parses.
inline constexpr int kDeepestXmlLevel = 256;

// Whether the XML parser would nest elements deeper than `limit` on this text. The parser calls itself once a level and
// has no limit, so that a deep text overflows the stack.
//
// It reads as the parser does: a name may hold quotes and '<', the name in a closing tag does not matter. On text that
// the parser refuses, either answer is right up to that place.
bool XmlNestsDeeperThan(const std::string& text, int limit);

}  // namespace quillon
