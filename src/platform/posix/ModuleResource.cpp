#include "platform/ModuleResource.h"

#include <dlfcn.h>
#include <link.h>

#include <string>

#include "platform/File.h"
#include "platform/ModuleTrailer.h"
#include "platform/WideText.h"

namespace quillon {

namespace {

// The module's file as the loader knows it: a relative name counts from the folder that was current when it was
// loaded. The loader has no name for the program itself.
std::string FileOfModule(void* module) {
    link_map* map = nullptr;
    const bool isKnown = module && dlinfo(module, RTLD_DI_LINKMAP, &map) == 0 && map && map->l_name;
    const std::string name = isKnown ? map->l_name : "";
    return name.empty() ? "/proc/self/exe" : name;
}

// Fills `bytes` from a place that lies `fromEnd` bytes before the end.
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
