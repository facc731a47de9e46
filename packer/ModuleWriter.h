#pragma once

#include <cstddef>
#include <filesystem>
#include <span>

namespace quillon {

// Writes a copy of the template module with the scrambled package inside: in its resources when it is a Windows module,
// see WindowsModule.h, and after its image otherwise, see ModuleTrailer.h. A package that the template already carries
// is replaced. Windows modules also take `description`, of MakePiPL, unless it is empty. The output appears whole,
// under its name, or not at all. Throws FileError when a file cannot be read or written, and when the template does not
// take the package.
void WriteModule(const std::filesystem::path& output, const std::filesystem::path& templateModule,
                 std::span<const std::byte> scrambledPackage, std::span<const std::byte> description = {});

// Whether WriteModule has made this file from the template. Throws FileError when one of them cannot be read.
bool IsMadeFrom(const std::filesystem::path& module, const std::filesystem::path& templateModule);

}  // namespace quillon
