#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon::cli {

// One message of the driver's compiler or linker. Columns are left out: each driver counts them in a text that it has
// made itself.
struct ShaderMessage {
    enum class Severity { error, warning };

    Severity severity = Severity::error;
    int line = 0;      // in the second of the two strings that the driver gets, from 1; 0 when the message names none
    std::string text;  // without place and severity; further lines of the message after line feeds

    bool operator==(const ShaderMessage&) const = default;
};

// Reads a log of the two strings that the engine gives the driver, of which the first has `preambleLines`. Knows the
// forms of the common drivers; what has none of them is one message without a line. Empty for an empty log.
std::vector<ShaderMessage> ReadShaderLog(std::string_view log, int preambleLines);

}  // namespace quillon::cli
