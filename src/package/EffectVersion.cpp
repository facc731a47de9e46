#include "package/EffectVersion.h"

#include "package/ConfigDocument.h"

namespace quillon {

namespace {

struct Field {
    const wchar_t* key;
    int shift;
    std::uint32_t mask;
};

constexpr Field kFields[] = {
    {L"MAJOR_VERSION", 0, 0x3F},
    {L"MINOR_VERSION", 6, 0xFF},
    {L"BUILD_VERSION", 14, 0xFFFF},
    {L"STAGE_VERSION", 30, 0x3},
};

}  // namespace

EffectVersion EffectVersion::FromConfig(const ConfigDocument& config) {
    EffectVersion version;
    for (const Field& field : kFields)
        version.word |= (static_cast<std::uint32_t>(config.GetInteger(field.key)) & field.mask) << field.shift;
    return version;
}

std::uint32_t EffectVersion::hostWord() const {
    return (build() & 0x1FF) | stage() << 9 | (minor() & 0xF) << 15 | (major() & 0x7) << 19 | (major() >> 3) << 26;
}

}  // namespace quillon
