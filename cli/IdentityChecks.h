#pragma once

#include "cli/EffectSource.h"

namespace quillon::cli {

// Warnings about what config.xml, which parses, says of the effect: keys that nobody will find, numbers that are read
// as others than they look, flags with which hosts do not make use of all that the engine can do, or of more.
Diagnostics CheckIdentity(const EffectSource& source);

}  // namespace quillon::cli
