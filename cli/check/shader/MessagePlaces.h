#pragma once

#include <string_view>
#include <vector>

#include "cli/check/shader/ShaderLog.h"
#include "cli/check/shader/ShaderSource.h"
#include "cli/check/shader/SpreadText.h"

namespace quillon::cli {

// A message of the driver at its place in the author's text, in the author's words.
struct PlacedMessage {
    ShaderMessage::Severity severity = ShaderMessage::Severity::error;
    TextPlace place{};  // all 0 where the driver names none, or one that is not the author's
    std::string text{};
};

// Finds the places of the messages in `log`, which the driver gave for the text, by those in `spreadLog`, which it gave
// for the same text spread out. Where the two logs do not say the same, only lines are known, and columns by a name
// that the message quotes and the line holds once. `preambleLines` as in ReadShaderLog.
std::vector<PlacedMessage> PlaceMessages(const ShaderSource& source, std::string_view log, const SpreadText& spread,
                                         std::string_view spreadLog, int preambleLines);

}  // namespace quillon::cli
