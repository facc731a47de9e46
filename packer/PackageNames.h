#pragma once

#include <vector>

#include "packer/EffectFolder.h"

namespace quillon {

// Throws FileError unless the engine can fetch each of the files by its name: not empty, without '/', '\', ':' and
// zero bytes, at most 65,535 bytes long, and no two that differ in the case of ASCII letters only.
void CheckPackageNames(const std::vector<PackageFile>& files);

}  // namespace quillon
