#pragma once

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

// What the tool needs of the system and does not find in the language. Narrow text, names of files too, is UTF-8
// inside the tool on every system, see Utf8Path.h.

namespace quillon::cli {

// The environment variable that names the folder of temporary files.
extern const char* const kTemporaryVariable;

// The first thing in main(): fits the process to what the tool does, its memory, its terminal and its texts.
void PrepareProcess();

// The command line without the program's name. `argc` and `argv` are those of main().
std::vector<std::string> ProgramArguments(int argc, char** argv);

// The file that this program was started from.
std::filesystem::path ProgramFile();

// From now on the graphics driver compiles each shader anew: one from its cache on disk gives no warnings. Before the
// process first uses OpenGL.
void DoWithoutShaderCache();

// The memory of this process that is in RAM now; 0 where the system does not say.
std::size_t ResidentBytes();

}  // namespace quillon::cli
