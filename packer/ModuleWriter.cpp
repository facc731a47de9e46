#include "packer/ModuleWriter.h"

#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

#include "packer/PackageError.h"
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
    if (scrambledPackage.size() > 0xFFFFFFFF) throw PackageError("the package is too large; it must stay below 4 GiB");
    std::vector<std::byte> module = ReadWholeFile(templateModule);
    if (!IsPortableExecutable(module)) {
        AppendPackage(module, scrambledPackage);
    } else {
        try {
            module = MakeWindowsModule(module, scrambledPackage, description);
        } catch (const PackageError& error) {
            throw PackageError(templateModule.string() + ": " + error.what());
        }
    }

    std::error_code error;
    // The template may be read-only; its module has to be replaced the next time.
    const fs::perms permissions = fs::status(templateModule, error).permissions() | fs::perms::owner_write;
    if (!error) error = WriteWholeFile(output, module, permissions);
    if (error) throw PackageError(output.string() + ": cannot be written; " + error.message());
}

}  // namespace quillon
