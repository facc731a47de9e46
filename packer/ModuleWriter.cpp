#include "packer/ModuleWriter.h"

#include <cstdint>
#include <string>
#include <vector>

#include "packer/FileError.h"
#include "packer/PortableExecutable.h"
#include "packer/WholeFile.h"
#include "packer/WindowsModule.h"
#include "platform/ModuleTrailer.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

// Takes off the package that the module carries, if it does.
void RemovePackage(std::vector<std::byte>& module) {
    if (const auto package = PackageBehindImage(module))
        module.resize(module.size() - kModuleTrailerBytes - package->size());
}

// Puts the package behind the image.
void AppendPackage(std::vector<std::byte>& module, std::span<const std::byte> scrambledPackage) {
    RemovePackage(module);
    const ModuleTrailer trailer = MakeModuleTrailer(static_cast<std::uint32_t>(scrambledPackage.size()));
    module.reserve(module.size() + scrambledPackage.size() + trailer.size());
    module.insert(module.end(), scrambledPackage.begin(), scrambledPackage.end());
    module.insert(module.end(), trailer.begin(), trailer.end());
}

}  // namespace

void WriteModule(const fs::path& output, const fs::path& templateModule, std::span<const std::byte> scrambledPackage,
                 std::span<const std::byte> description) {
    if (scrambledPackage.size() > 0xFFFFFFFF)
        throw FileError("", "the package is too large, it must stay below 4 GiB", "use fewer or smaller files");
    std::vector<std::byte> module = ReadWholeFile(templateModule);
    if (!IsPortableExecutable(module)) {
        AppendPackage(module, scrambledPackage);
    } else {
        try {
            module = MakeWindowsModule(module, scrambledPackage, description);
        } catch (const FileError& error) {
            throw error.at(templateModule.string());
        }
    }
    WriteWholeFile(output, module);
}

}  // namespace quillon
