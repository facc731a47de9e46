#include "frei0r/OwnModule.h"

#include <dlfcn.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

namespace quillon::frei0r {

namespace {

// The file of the module or program that an address is in; empty when the loader knows of none.
std::string FileAt(const void* address) {
    Dl_info found{};
    return dladdr(address, &found) != 0 && found.dli_fname ? found.dli_fname : "";
}

std::string OwnFile() {
    return FileAt(reinterpret_cast<const void*>(&OwnModuleFile));
}

// ffmpeg's library counts milliseconds. It exports this function, whatever its file is called. A program that is linked
// with it statically exports nothing: ffmpeg's own ones are known by the beginnings of their names.
constexpr char kFunctionOfLibrary[] = "avfilter_version";
constexpr std::string_view kPrograms[] = {"ffmpeg", "ffplay", "ffprobe"};
constexpr double kMillisecondsPerSecond = 1000;

bool HasFunction(const std::string& file, const char* function) {
    void* const handle = dlopen(file.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (!handle) return false;
    // Libraries that the file needs are searched too.
    const void* const found = dlsym(handle, function);
    const bool isOwn = found && FileAt(found) == file;
    dlclose(handle);
    return isOwn;
}

}  // namespace

std::filesystem::path OwnModuleFile() {
    return OwnFile();
}

void* KeepOwnModuleLoaded() {
    return dlopen(OwnFile().c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

double HostTimeOfASecond(const void* hostCode) {
    const std::string file = FileAt(hostCode);
    const std::string name = std::filesystem::path(file).filename().string();
    const bool isProgram =
        std::ranges::any_of(kPrograms, [&name](std::string_view beginning) { return name.starts_with(beginning); });
    return isProgram || HasFunction(file, kFunctionOfLibrary) ? kMillisecondsPerSecond : 1;
}

}  // namespace quillon::frei0r
