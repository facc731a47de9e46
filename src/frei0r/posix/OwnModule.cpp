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

// The beginnings of the file names of ffmpeg's library, and of its programs when they are linked with it statically.
constexpr std::string_view kMillisecondHosts[] = {"libavfilter", "ffmpeg", "ffplay", "ffprobe"};
constexpr double kMillisecondsPerSecond = 1000;

}  // namespace

std::filesystem::path OwnModuleFile() {
    return OwnFile();
}

void* KeepOwnModuleLoaded() {
    return dlopen(OwnFile().c_str(), RTLD_NOW | RTLD_NOLOAD | RTLD_NODELETE);
}

double HostTimeOfASecond(const void* hostCode) {
    const std::string name = std::filesystem::path(FileAt(hostCode)).filename().string();
    const bool isMilliseconds = std::ranges::any_of(
        kMillisecondHosts, [&name](std::string_view beginning) { return name.starts_with(beginning); });
    return isMilliseconds ? kMillisecondsPerSecond : 1;
}

}  // namespace quillon::frei0r
