#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <span>
#include <system_error>
#include <vector>

namespace quillon {

// All bytes of a file of less than 4 GiB, more than which no package and no module can have. Throws PackageError when
// it is larger, is no file (a link counts as what it leads to), or cannot be read.
std::vector<std::byte> ReadWholeFile(const std::filesystem::path& path);

// Writes a file whole or not at all: to a temporary name in the same folder, which then takes the file's name and
// replaces what had it. Without `permissions` it has those of any new file. Gives why it could not be written.
std::error_code WriteWholeFile(const std::filesystem::path& path, std::span<const std::byte> bytes,
                               std::optional<std::filesystem::perms> permissions = std::nullopt);

}  // namespace quillon
