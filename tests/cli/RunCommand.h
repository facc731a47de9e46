#pragma once

#include <filesystem>
#include <string>

namespace quillon::test {

// Runs a program by the system's shell, in this folder, without input. `environment` is "NAME=VALUE" or empty;
// `arguments` are quoted by double quotes where they hold blanks. Gives the exit status; -1 when it was ended.
int runCommand(const std::filesystem::path& folder, const std::string& environment, const std::string& program,
               const std::string& arguments);

}  // namespace quillon::test
