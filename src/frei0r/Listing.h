#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "frei0r/Frei0rApi.h"

namespace quillon::frei0r {

// What a parameter of the plug-in is to the effect. A color or a point in space is two parameters.
enum class Role : std::uint32_t { number, angle, checkBox, popup, color, alpha, point, point3D, depth };
inline constexpr std::uint32_t kRoleCount = 9;

struct ListedControl {
    std::string name;         // unique in the plug-in
    std::string explanation;  // what the numbers mean
    Role role = Role::number;
    std::uint32_t declaration = 0;            // index among the script's declarations
    float low = 0;                            // what the host's 0 means to the effect; not of points
    float high = 1;                           // and what 1 means
    std::array<std::byte, 16> declared = {};  // the script's default, as in Parameter::value

    bool operator==(const ListedControl&) const = default;
};

inline constexpr std::uint32_t kNoLayer = 0xFFFFFFFF;

// What a host can learn of a plug-in without starting its effect. Made when the effect is packed and kept in the
// module's file, so that a folder full of plug-ins is listed without GL and without a script.
struct Listing {
    std::string name;
    std::string explanation;
    PluginType type = PluginType::filter;
    std::uint32_t majorVersion = 0;
    std::uint32_t minorVersion = 0;
    std::uint32_t layer = kNoLayer;  // mixer2: declaration index of the control that takes the second input
    std::vector<ListedControl> controls;

    bool operator==(const Listing&) const = default;
};

std::vector<std::byte> WriteListing(const Listing& listing);

// Nothing for bytes that WriteListing did not write.
std::optional<Listing> ReadListing(std::span<const std::byte> bytes);

// The listing that a module's file carries, see ModuleTrailer.h. Reads no more of the file than that. Nothing when the
// file cannot be read or carries none.
std::optional<Listing> ReadListingOf(const std::filesystem::path& module);

}  // namespace quillon::frei0r
