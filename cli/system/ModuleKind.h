#pragma once

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <string>

#include "cli/system/FileEnding.h"

namespace quillon::cli {

// The modules of each system, distinguished by the endings of their names.
struct ModuleKind {
    const char* ending;
    const char* system;
    bool isDescribed;  // hosts there read a description of the effect before they load it
};

inline constexpr ModuleKind kModuleKinds[] = {{".so", "Linux", false}, {".aex", "Windows", true}};

// What the system that the tool runs on can load; each system's System.cpp says which.
extern const ModuleKind& kOwnModuleKind;

// Null for a name that ends in another way; the case of letters does not count.
inline const ModuleKind* ModuleKindOf(const std::filesystem::path& module) {
    const std::string ending = LowerEnding(module);
    const auto* const found =
        std::ranges::find_if(kModuleKinds, [&ending](const ModuleKind& kind) { return kind.ending == ending; });
    return found == std::end(kModuleKinds) ? nullptr : found;
}

}  // namespace quillon::cli
