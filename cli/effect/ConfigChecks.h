#pragma once

#include <string>

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Warnings about what config.xml, which parses, says of the effect: keys that nothing reads, numbers that are
// read differently from how they look, and flags that ask hosts for less or for more than the engine can do.
Diagnostics CheckIdentity(const EffectSource& source);

// The line where config.xml, which parses, has this key; 0 when it has not.
int LineOfKey(const EffectSource& source, const std::string& key);

}  // namespace quillon::cli
