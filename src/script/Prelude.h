#pragma once

#include <string>

namespace quillon {

// The tables that a script finds as global variables: QL_Type, QL_GL and QL_ParamFlags. The text begins and ends with
// two line feeds.
//
// The prepared program, prelude included, is searched for the names of optional entry points, and rewritten. So the
// prelude holds none of those names and none of the shorthands, not even in a comment.
std::string Prelude();

}  // namespace quillon
