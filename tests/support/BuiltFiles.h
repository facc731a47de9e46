#pragma once

#include <filesystem>

namespace quillon::test {

// What the build has made, and what it was made of.

std::filesystem::path CarrierModule();                  // a module with nothing in it but room for a package
std::filesystem::path TemplateModule();                 // the effect module without an effect
std::filesystem::path PluginTemplate();                 // the frei0r plug-in without an effect; on Linux only
std::filesystem::path WindowsModule(const char* name);  // one of those in tests/windows
std::filesystem::path ToolProgram();
std::filesystem::path SourceFolder();  // the repository

}  // namespace quillon::test
