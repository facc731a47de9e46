#pragma once

#include <filesystem>

namespace quillon::frei0r {

// The plug-in's own file, as the system's loader has it.
std::filesystem::path OwnModuleFile();

// The loader's handle of the module, which from now on stays loaded to the end of the process, whatever its host
// unloads: a GL driver that has started leaves threads and per-thread data that outlive the last instance.
// Null when the loader does not know its own module any more.
void* KeepOwnModuleLoaded();

// What a second is in the times of the host whose code is at this address. Frames come with seconds, but ffmpeg counts
// milliseconds.
double HostTimeOfASecond(const void* hostCode);

}  // namespace quillon::frei0r
