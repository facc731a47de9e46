#pragma once

#include "cli/effect/EffectSource.h"

namespace quillon::cli {

// Warnings about files that an author probably does not mean to ship: backups of editors, files that the system keeps,
// modules, and renders, which are pictures that the engine cannot read or that fx.js does not name. They are packed all
// the same.
Diagnostics CheckLeftovers(const EffectSource& source);

}  // namespace quillon::cli
