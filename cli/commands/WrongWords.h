#pragma once

#include "cli/diagnostics/ToolError.h"

namespace CLI {
class App;
class ParseError;
}  // namespace CLI

namespace quillon::cli {

// What to say of a command line that the parser has refused. A command or an option that does not exist comes first,
// with the nearest one: an option with a misspelt name also counts as missing.
ToolError WrongWords(const CLI::App& app, const CLI::ParseError& error);

}  // namespace quillon::cli
