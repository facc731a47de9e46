#pragma once

#include <string>

namespace quillon::cli {

// What `quillon --version` prints: a line with version and commit, one with the libraries that run scripts and read
// and write pictures.
std::string VersionText();

}  // namespace quillon::cli
