#pragma once

#include <filesystem>
#include <string>

// The system's loader, as little as a host needs of it.

namespace quillon::host {

// Loads a module with all its symbols bound and none of them shared with other modules; null when it cannot, with the
// loader's words in `reason`. What is loaded stays: an effect's threads and statics would not survive unloading.
void* loadModule(const std::filesystem::path& file, std::string& reason);

// An exported function of the module; null when it has none of that name.
void* findInModule(void* module, const char* name);

}  // namespace quillon::host
