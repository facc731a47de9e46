#pragma once

#include <filesystem>
#include <string>

// The system's loader, as little as a host needs of it.

namespace quillon::host {

// Loads a module with all its symbols bound and none of them shared with other modules; null when it cannot, with the
// loader's words in `reason`.
void* LoadModule(const std::filesystem::path& file, std::string& reason);

// An exported function of the module; null when it has none of that name.
void* FindInModule(void* module, const char* name);

// Takes one loading back. Nobody may be inside the module, or come back to it.
void UnloadModule(void* module);

}  // namespace quillon::host
