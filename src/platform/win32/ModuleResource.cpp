#include "platform/ModuleResource.h"

#include <windows.h>

namespace quillon {

std::optional<std::vector<std::byte>> ReadModuleResource(void* module) {
    const auto instance = static_cast<HMODULE>(module);
    const HRSRC resource = FindResourceW(instance, L"BLOB", RT_RCDATA);
    if (!resource) return std::nullopt;
    const DWORD size = SizeofResource(instance, resource);
    if (size == 0) return std::vector<std::byte>();
    // A view into the mapped image: there is nothing to give back.
    const HGLOBAL loaded = LoadResource(instance, resource);
    const auto* bytes = loaded ? static_cast<const std::byte*>(LockResource(loaded)) : nullptr;
    if (!bytes) return std::nullopt;
    return std::vector<std::byte>(bytes, bytes + size);
}

}  // namespace quillon
