#include "packer/WindowsModule.h"

#include <cstdint>

#include "packer/FileError.h"
#include "packer/PortableExecutable.h"

namespace quillon {

namespace {

constexpr std::uint32_t kLanguage = 1033;

const ResourceKey kPackage = {std::uint32_t{10}, u"BLOB", kLanguage};
const ResourceKey kDescription = {u"PIPL", std::uint32_t{16000}, kLanguage};

// The system takes the language of its user before that of ours.
void Replace(Resources& resources, const ResourceKey& key, std::span<const std::byte> bytes) {
    std::erase_if(resources,
                  [&key](const auto& entry) { return entry.first.type == key.type && entry.first.name == key.name; });
    resources[key] = {bytes};
}

}  // namespace

std::vector<std::byte> MakeWindowsModule(std::span<const std::byte> file, std::span<const std::byte> scrambledPackage,
                                         std::span<const std::byte> description) {
    const PortableExecutable module(file);
    Resources resources = module.resources();
    Replace(resources, kPackage, scrambledPackage);
    if (!description.empty()) Replace(resources, kDescription, description);
    return module.withResources(resources);
}

std::span<const std::byte> PackageOfWindowsModule(std::span<const std::byte> file) {
    const Resources resources = PortableExecutable(file).resources();
    const auto found = resources.find(kPackage);
    return found == resources.end() ? std::span<const std::byte>() : found->second.bytes;
}

}  // namespace quillon
