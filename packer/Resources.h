#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <variant>

namespace quillon {

// A resource's type or name: a text, or a number below 2^31. Sorted as a resource directory is: texts by their UTF-16
// units first, then the numbers. The system looks texts up in upper case, so that is how they are stored.
using ResourceId = std::variant<std::u16string, std::uint32_t>;

// Under what a resource is found; `language` is Windows' number.
struct ResourceKey {
    ResourceId type;
    ResourceId name;
    std::uint32_t language = 0;

    auto operator<=>(const ResourceKey&) const = default;  // NOLINT(modernize-use-nullptr): compares with 0
};

// Its content.
struct Resource {
    std::span<const std::byte> bytes;  // not owned
    std::uint32_t codePage = 0;
};

// All resources of a Windows module.
using Resources = std::map<ResourceKey, Resource>;

}  // namespace quillon
