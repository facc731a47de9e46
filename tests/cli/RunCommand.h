#pragma once

#include <filesystem>
#include <string>

namespace quillon::test {

// Runs a program in this folder without input, with what it prints in the files "out" and "err" in `printed`, a folder
// too. `environment` is "NAME=VALUE" or empty; `arguments` are quoted by double quotes where they hold blanks. Gives
// the exit status; -1 when it was ended.
int RunCommand(const std::filesystem::path& folder, const std::filesystem::path& printed,
               const std::string& environment, const std::string& program, const std::string& arguments);

}  // namespace quillon::test
