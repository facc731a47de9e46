#pragma once

#include <string_view>

namespace quillon {

// The tables that a script finds as global variables: QL_Type, QL_GL and QL_ParamFlags. It begins and ends with two
// line feeds.
//
// The prelude is a part of the text that is searched for the names of optional entry points, and rewritten. So it
// holds none of those names and none of the shorthands, not even in a comment.
extern const std::string_view kPrelude;

}  // namespace quillon
