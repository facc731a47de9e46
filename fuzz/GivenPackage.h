#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "packer/Archive.h"

// For targets that link with --wrap: the engine reads this package, whatever module it is given. One source a program.

namespace quillon::fuzz {

inline std::vector<std::byte> givenPackage;  // as a module carries it

inline void GiveFiles(std::initializer_list<std::pair<const char*, std::string_view>> files) {
    std::vector<PackageFile> packed;
    for (const auto& [name, text] : files) {
        const auto bytes = std::as_bytes(std::span(text));
        packed.push_back({name, {bytes.begin(), bytes.end()}});
    }
    givenPackage = Scramble(WriteArchive(packed));
}

// Takes the place of ReadModuleResource, by its name in object files.
std::optional<std::vector<std::byte>> GivenResource(void* module) asm("__wrap__ZN7quillon18ReadModuleResourceEPv");
std::optional<std::vector<std::byte>> GivenResource(void*) {
    return givenPackage;
}

}  // namespace quillon::fuzz
