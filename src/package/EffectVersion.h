#pragma once

#include <cstdint>

namespace quillon {

class ConfigDocument;

// An effect's version in one word: major in bits 0 to 5, minor in 6 to 13, build in 14 to 29, stage in 30 and 31.
struct EffectVersion {
    std::uint32_t word = 0;

    // The fields, each shifted down.
    std::uint32_t major() const { return word & 0x3F; }
    std::uint32_t minor() const { return (word >> 6) & 0xFF; }
    std::uint32_t build() const { return (word >> 14) & 0xFFFF; }
    std::uint32_t stage() const { return word >> 30; }

    // From the keys MAJOR_VERSION, MINOR_VERSION, BUILD_VERSION and STAGE_VERSION, each cut to its width.
    static EffectVersion FromConfig(const ConfigDocument& config);

    // The version word of the effect API, which has no room for all of it: build is cut to 9 bits, minor to 4, and
    // major is split into bits 19 to 21 and 26 to 28.
    std::uint32_t hostWord() const;
};

}  // namespace quillon
