#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

#include "parameter/ControlKinds.h"

namespace quillon {

// Bits of Parameter::flags. The three scale flags are public to scripts as QL_ParamFlags; the top byte holds the
// number of decimal places that the host displays.
namespace ParameterFlag {
inline constexpr std::uint32_t kHidden = 1;
inline constexpr std::uint32_t kDisabled = 2;
inline constexpr std::uint32_t kScaleByWidth = 8;    // a FLOAT follows the render's horizontal downsampling
inline constexpr std::uint32_t kScaleByHeight = 16;  // a FLOAT follows the render's vertical downsampling
inline constexpr std::uint32_t kRemoveScale = 32;    // a POINT2D is brought to full resolution
inline constexpr unsigned kPrecisionShift = 24;
inline constexpr std::uint32_t kPrecisionMask = 0xFF000000;
}  // namespace ParameterFlag

// One control of the effect, or one uniform of a shader: the same record, so that a control's value reaches a uniform
// as 16 plain bytes. A default record is all zero and names nothing.
class Parameter {
public:
    // The kind's factory, in entities/Factories.h.
    class Factory;

    std::string uniformName;       // the name that scripts and shaders know it by
    std::string label;             // the text in the host's list of controls
    std::uint32_t kind = UNKNOWN;  // a QL_Type, or any number that a script gave
    std::uint32_t id = 0;          // 0: not live
    std::uint32_t flags = 0;       // ParameterFlag
    std::int32_t location = 0;     // GL uniform location, in a shader's record only
    bool changed = false;          // whether the last write of a uniform by the script changed it; nothing reads it
    alignas(4) std::byte value[16] = {};  // by kind, see ScriptForm
    float min[4] = {};                    // slider range, first element
    float max[4] = {};
    std::uint32_t texture = 0;  // entity id, for LAYER and TEXTURE
    std::string choices;        // entries of a POPUP, separated by "|"
    std::uint32_t choiceCount = 0;

    float floatAt(int index) const { return load<float>(index); }    // `value` as floats, 0 to 3; nothing is converted
    std::int32_t intValue() const { return load<std::int32_t>(0); }  // its first four bytes, like the next
    std::uint32_t wordValue() const { return load<std::uint32_t>(0); }
    void setFloatAt(int index, float number) { store(index, number); }
    void setIntValue(std::int32_t number) { store(0, number); }
    void setWordValue(std::uint32_t number) { store(0, number); }

private:
    template <class T>
    T load(int index) const {
        T number;
        std::memcpy(&number, value + 4 * index, sizeof number);
        return number;
    }
    template <class T>
    void store(int index, T number) {
        std::memcpy(value + 4 * index, &number, sizeof number);
    }
};

}  // namespace quillon
