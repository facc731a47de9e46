#include "frei0r/ControlValues.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

#include "platform/Truncation.h"

namespace quillon::frei0r {

namespace {

enum class Unit {
    range,  // 0 to 1 over the control's range
    whole,  // the same, rounded to an integer
    frame,  // shares of the frame's extents
};

struct RoleRow {
    ParamType type;
    HostControl control;
    Unit unit;
    int first;  // of the numbers in Parameter::value
    int count;
};

constexpr RoleRow kRoles[] = {
    /* number   */ {ParamType::number, HostControl::floatSlider, Unit::range, 0, 1},
    /* angle    */ {ParamType::number, HostControl::angle, Unit::range, 0, 1},
    /* checkBox */ {ParamType::boolean, HostControl::checkbox, Unit::whole, 0, 1},
    /* popup    */ {ParamType::number, HostControl::popup, Unit::whole, 0, 1},
    /* color    */ {ParamType::color, HostControl::color, Unit::range, 0, 3},
    /* alpha    */ {ParamType::number, HostControl::color, Unit::range, 3, 1},
    /* point    */ {ParamType::position, HostControl::point2D, Unit::frame, 0, 2},
    /* point3D  */ {ParamType::position, HostControl::point3D, Unit::frame, 0, 2},
    /* depth    */ {ParamType::number, HostControl::point3D, Unit::range, 2, 1},
};
static_assert(std::size(kRoles) == kRoleCount);

const RoleRow& RowOf(Role role) {
    return kRoles[static_cast<std::uint32_t>(role)];
}

double Within01(double number) {
    return number > 0 ? std::min(number, 1.0) : 0;  // NaN too is 0
}

double ExtentAt(FrameSize frame, int axis) {
    return axis == 0 ? frame.width : frame.height;
}

// In doubles, so that a float survives the way to the host and back.
double RangeOf(const ListedControl& control) {
    return static_cast<double>(control.high) - control.low;
}

}  // namespace

ParamType TypeOf(Role role) {
    return RowOf(role).type;
}

HostControl HostControlOf(Role role) {
    return RowOf(role).control;
}

HostValue LoadHostValue(ParamType type, const void* record) {
    switch (type) {
        case ParamType::color: {
            const auto& [red, green, blue] = *static_cast<const Color*>(record);
            return {red, green, blue};
        }
        case ParamType::position: {
            const auto& [x, y] = *static_cast<const Position*>(record);
            return {x, y};
        }
        default:
            return {*static_cast<const double*>(record)};
    }
}

void StoreHostValue(ParamType type, const HostValue& value, void* record) {
    switch (type) {
        case ParamType::color:
            *static_cast<Color*>(record) = {static_cast<float>(value[0]), static_cast<float>(value[1]),
                                            static_cast<float>(value[2])};
            return;
        case ParamType::position:
            *static_cast<Position*>(record) = {value[0], value[1]};
            return;
        default:
            *static_cast<double*>(record) = value[0];
    }
}

void SetDeclaredValue(Parameter& parameter, const ListedControl& control, FrameSize frame) {
    static_assert(sizeof parameter.value == sizeof control.declared);
    std::memcpy(parameter.value, control.declared.data(), sizeof parameter.value);
    const HostControl shown = HostControlOf(control.role);
    for (int i = 0; shown == HostControl::color && i < 4; ++i)
        parameter.setFloatAt(i, static_cast<std::uint8_t>(TruncateToInt32(parameter.floatAt(i))) / 255.0f);
    for (int i = 0; shown == HostControl::point2D && i < 2; ++i)
        parameter.setFloatAt(i, static_cast<float>(parameter.floatAt(i) * ExtentAt(frame, i)));
}

void SetHostValue(Parameter& parameter, const ListedControl& control, const HostValue& value, FrameSize frame) {
    const RoleRow& row = RowOf(control.role);
    for (int i = 0; i < row.count; ++i) {
        const double number = row.unit == Unit::frame ? value[i] * ExtentAt(frame, i)
                                                      : control.low + Within01(value[i]) * RangeOf(control);
        if (row.unit == Unit::whole)
            parameter.setIntValue(TruncateToInt32(std::round(number)));
        else
            parameter.setFloatAt(row.first + i, static_cast<float>(number));
    }
}

HostValue HostValueOf(const Parameter& parameter, const ListedControl& control, FrameSize frame) {
    const RoleRow& row = RowOf(control.role);
    HostValue value{};
    for (int i = 0; i < row.count; ++i) {
        const double number = row.unit == Unit::whole ? parameter.intValue() : parameter.floatAt(row.first + i);
        if (row.unit == Unit::frame)
            value[i] = number / ExtentAt(frame, i);
        else if (RangeOf(control) != 0)
            value[i] = Within01((number - control.low) / RangeOf(control));
    }
    return value;
}

}  // namespace quillon::frei0r
