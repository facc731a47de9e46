#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace quillon {

// A Windows module carries a package and the effect's description as the resources "BLOB" of type 10 and 16000 of type
// "PIPL", language 1033.

// A copy of the module `file` with this package, and with this description unless it is empty. They replace those that
// the module has, in all languages; its other resources stay. Throws FileError, without a place, when the module has no
// room for them or is damaged, see PortableExecutable.h.
std::vector<std::byte> MakeWindowsModule(std::span<const std::byte> file, std::span<const std::byte> scrambledPackage,
                                         std::span<const std::byte> description);

// The package of a module, still scrambled: a part of `file`, empty when the module carries none. Throws FileError,
// without a place, for a file that is not a valid module.
std::span<const std::byte> PackageOfWindowsModule(std::span<const std::byte> file);

}  // namespace quillon
