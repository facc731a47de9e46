#pragma once

#include <string>

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Warnings about what config.xml, which parses, says of the effect: keys that nobody will find, numbers that are read
// as others than they look, flags with which hosts do not make use of all that the engine can do, or of more.
Diagnostics CheckIdentity(const EffectSource& source);

// The line where config.xml, which parses, has this key; 0 when it has not.
int LineOfKey(const EffectSource& source, const std::string& key);

}  // namespace quillon::cli
