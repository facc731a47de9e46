#pragma once

#include <filesystem>

namespace quillon::test {

// What the build has made, and where it has it from.

std::filesystem::path carrierModule();   // a module with nothing in it but room for a package
std::filesystem::path templateModule();  // the effect module without an effect
std::filesystem::path toolProgram();
std::filesystem::path sourceFolder();  // the repository

}  // namespace quillon::test
