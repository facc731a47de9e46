#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillon {

// One message of the driver's compiler or linker. There is no column: drivers count it in a text whose words were
// renamed and whose blanks were joined.
struct ShaderMessage {
    enum class Severity { error, warning };

    Severity severity = Severity::error;
    int line = 0;      // in the author's text, from 1; 0 when the message names none, or one that is not the author's
    std::string text;  // without place and severity; further lines of the message after line feeds

    bool operator==(const ShaderMessage&) const = default;
};

// Reads a log of the stage that Shader gives the driver: two strings, of which the first has `preambleLines`, and the
// second begins with `addedLines` that are not the author's and goes on with the whole of `source`. Knows the forms of
// the common drivers; what has none of them is one message without a line. Empty for an empty log.
std::vector<ShaderMessage> ReadShaderLog(std::string_view log, std::string_view source, int preambleLines,
                                         int addedLines);

}  // namespace quillon
