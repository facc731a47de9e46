#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>

namespace quillon {

// What a Parameter is a value of. The numbers are those of the script's table QL_Type.
enum QL_Type : std::uint32_t {
    UNKNOWN = 0,
    FLOAT = 1,
    POINT = 2,
    COLOR = 3,
    LAYER = 4,
    POINT2D = 5,
    TEXTURE = 6,
    PATH = 7,
    BOOL = 8,
    POPUP = 9,
    GROUP_START = 10,
    GROUP_END = 11,
    ANGLE = 12,
};

// How scripts read and write a value, and where Parameter keeps it.
enum class ScriptForm {
    none,      // no value: a script that reads it receives the parameter's id
    number,    // a number: the first float
    elements,  // an array of numbers: as many floats; an element that throws leaves the earlier ones written
    tuple,     // an array of numbers: as many floats; written together or not at all
    integer,   // a number: the first word, signed
    entity,    // the id of a texture or target: Parameter::texture
};

// The GLSL type of a uniform that holds the value. The numbers are OpenGL's.
enum class UniformType : std::uint32_t {
    none = 0,  // no uniform is sent
    int1 = 0x1404,
    float1 = 0x1406,
    vec2 = 0x8B50,
    vec3 = 0x8B51,
    vec4 = 0x8B52,
    bool1 = 0x8B56,
    sampler2D = 0x8B5E,
};

// The control that the effect's host shows.
enum class HostControl {
    none,
    floatSlider,
    angle,
    point2D,
    point3D,
    color,
    checkbox,
    popup,
    texturePopup,  // a popup that always registers with entry 0
    layer,
    path,
    groupStart,
    groupEnd,
};

// Everything that depends on the kind of a control.
struct ControlKind {
    QL_Type number;
    const char* name;  // in the script's table QL_Type
    ScriptForm scriptForm;
    std::size_t floats;  // of the value; 0 where it holds none
    UniformType uniformType;
    HostControl hostControl;
    const char* toolForm;  // what a user of the tool writes for a value; null: it takes none
};

// The most floats that a value holds.
inline constexpr std::size_t kMostFloats = 4;

// By number. A uniform without a control of its name takes the first kind of its type.
inline constexpr ControlKind kControlKinds[] = {
    {UNKNOWN, "UNKNOWN", ScriptForm::none, 0, UniformType::none, HostControl::none, nullptr},
    {FLOAT, "FLOAT", ScriptForm::number, 1, UniformType::float1, HostControl::floatSlider, "a number"},
    {POINT, "POINT", ScriptForm::elements, 3, UniformType::vec3, HostControl::point3D, "x,y,z"},
    {COLOR, "COLOR", ScriptForm::tuple, 4, UniformType::vec4, HostControl::color,
     "red,green,blue[,alpha] from 0 to 1, or #rrggbb[aa]"},
    {LAYER, "LAYER", ScriptForm::entity, 0, UniformType::sampler2D, HostControl::layer, nullptr},
    {POINT2D, "POINT2D", ScriptForm::elements, 2, UniformType::vec2, HostControl::point2D, "x,y in pixels"},
    {TEXTURE, "TEXTURE", ScriptForm::entity, 0, UniformType::none, HostControl::texturePopup, nullptr},
    {PATH, "PATH", ScriptForm::none, 0, UniformType::none, HostControl::path, nullptr},
    {BOOL, "BOOL", ScriptForm::integer, 0, UniformType::bool1, HostControl::checkbox, "true or false"},
    {POPUP, "POPUP", ScriptForm::integer, 0, UniformType::int1, HostControl::popup,
     "one of the entries, or its number from 1"},
    {GROUP_START, "GROUP_START", ScriptForm::none, 0, UniformType::none, HostControl::groupStart, nullptr},
    {GROUP_END, "GROUP_END", ScriptForm::none, 0, UniformType::none, HostControl::groupEnd, nullptr},
    {ANGLE, "ANGLE", ScriptForm::number, 1, UniformType::float1, HostControl::angle, "a number of degrees"},
};
static_assert(std::all_of(std::begin(kControlKinds), std::end(kControlKinds),
                          [](const ControlKind& kind) { return &kControlKinds[kind.number] == &kind; }),
              "rows are in the order of their numbers");
static_assert(std::all_of(std::begin(kControlKinds), std::end(kControlKinds),
                          [](const ControlKind& kind) { return kind.floats <= kMostFloats; }));

// The row of a number; that of UNKNOWN for a number that no kind has, which scripts may give too.
constexpr const ControlKind& ControlKindOf(std::uint32_t number) {
    return number < std::size(kControlKinds) ? kControlKinds[number] : kControlKinds[UNKNOWN];
}

}  // namespace quillon
