#pragma once

#include <cstddef>
#include <filesystem>
#include <span>

namespace quillon {

// Writes a copy of the template module with the scrambled package behind its image, see ModuleTrailer.h; a package
// that the template already carries is replaced. The output appears whole, under its name, or not at all. Throws
// PackageError when a file cannot be read or written.
void WriteModule(const std::filesystem::path& output, const std::filesystem::path& templateModule,
                 std::span<const std::byte> scrambledPackage);

}  // namespace quillon
