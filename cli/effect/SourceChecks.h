#pragma once

#include <string>
#include <string_view>

#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// Both take the whole content of a file and its path for the messages, and find at most the first fault.

// XML that the engine will not parse, with the line where the parser stops.
Diagnostics CheckConfig(const std::string& path, std::string_view content);

// Bytes that are not UTF-8, and zero bytes, where the text ends for the engine. The script heap refuses the whole
// program for the former, and reports a line before the true one.
Diagnostics CheckScriptEncoding(const std::string& path, std::string_view content);

}  // namespace quillon::cli
