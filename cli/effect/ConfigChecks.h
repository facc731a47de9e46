#pragma once

#include <string>

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Warnings about what config.xml, which parses, says of the effect: keys that nothing reads, numbers that are
// read differently from how they look, and flags that ask hosts for less or for more than the engine can do.
Diagnostics CheckIdentity(const EffectSource& source);

// Where config.xml, which parses, has this key: the place of its name, 0 when it has not.
struct PlaceOfKey {
    int line = 0;
    int column = 0;
};
PlaceOfKey FindKey(const EffectSource& source, const std::string& key);

}  // namespace quillon::cli
