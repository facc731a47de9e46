#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace quillon {

// Reads the one binary resource that a module carries, "BLOB". On Windows a resource of the module's image; elsewhere
// the bytes behind the ELF image in the module's own file, see ModuleTrailer.h.
//
// `module` is what the system's loader gave for the module: HINSTANCE or the handle of dlopen. Null is the program
// itself. The handle is trusted.
//
// Nothing when the module carries no resource or its file cannot be read; a present resource may have no bytes.
std::optional<std::vector<std::byte>> ReadModuleResource(void* module);

}  // namespace quillon
