#include "platform/ModuleResource.h"

#include <dlfcn.h>
#include <link.h>
#include <stdlib.h>

#include <climits>
#include <string>

#include "platform/File.h"
#include "platform/ModuleTrailer.h"
#include "platform/WideText.h"

namespace quillon {

namespace {

// The file that holds this code. The loader knows it by the name that the host gave, which may count from the folder
// that was current then; it is settled while the file is loaded, before the host can go to another folder.
struct OwnFile {
    OwnFile() noexcept {
        Dl_info info{};
        if (!dladdr(this, &info) || !info.dli_fname || !realpath(info.dli_fname, path)) return;
        base = info.dli_fbase;
    }

    char path[PATH_MAX] = {};
    const void* base = nullptr;  // where it is loaded; null when the system does not say
};

const OwnFile kOwnFile;

// The module's file. The loader has no name for the program itself.
std::string FileOfModule(void* module) {
    link_map* map = nullptr;
    if (!module || dlinfo(module, RTLD_DI_LINKMAP, &map) != 0 || !map || !map->l_name || !*map->l_name)
        return "/proc/self/exe";
    return reinterpret_cast<const void*>(map->l_addr) == kOwnFile.base ? kOwnFile.path : map->l_name;
}

// Fills `bytes` from `fromEnd` bytes before the end of the file.
bool ReadBeforeEnd(std::FILE* file, std::uint64_t fromEnd, std::span<std::byte> bytes) {
    return fseeko(file, -static_cast<off_t>(fromEnd), SEEK_END) == 0 &&
           std::fread(bytes.data(), 1, bytes.size(), file) == bytes.size();
}

}  // namespace

std::optional<std::vector<std::byte>> ReadModuleResource(void* module) {
    const FileHandle file = OpenFileForReading(WidenBytes(FileOfModule(module)));
    const std::int64_t fileBytes = file ? FileLength(file.get()) : -1;
    ModuleTrailer trailer;
    if (fileBytes < 0 || !ReadBeforeEnd(file.get(), trailer.size(), trailer)) return std::nullopt;
    const auto packageBytes = BytesBefore(trailer, static_cast<std::uint64_t>(fileBytes));
    if (!packageBytes) return std::nullopt;

    std::vector<std::byte> package(*packageBytes);
    if (!ReadBeforeEnd(file.get(), trailer.size() + package.size(), package)) return std::nullopt;
    return package;
}

}  // namespace quillon
