#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace quillon {

// Reads the one binary resource that a module carries, "BLOB". On Windows it is a resource of the module's image, on
// other systems the bytes after the ELF image in the module's file, see ModuleTrailer.h.
//
// `module` is what the system's loader gave for the module, HINSTANCE or the handle of dlopen, and must be valid. Null
// is the program itself. The module that this code is part of is found whatever folder is current; another one that was
// loaded by a relative name is looked for from the current folder.
//
// Gives nothing when the module carries no resource or its file cannot be read. A resource may have no bytes.
std::optional<std::vector<std::byte>> ReadModuleResource(void* module);

}  // namespace quillon
