#include "cli/effect/HostValues.h"

namespace quillon::cli {

void SetControl(host::HostInstance& instance, const Control& control, const ControlValue& value,
                std::uint32_t downsample) {
    const auto& [x, y, z, w] = value.numbers;
    switch (ControlKindOf(control.declared.kind).hostControl) {
        case HostControl::floatSlider:
            return instance.setFloat(control.index, x);
        case HostControl::angle:
            return instance.setAngle(control.index, x);
        case HostControl::point3D:
            return instance.setPoint3D(control.index, x, y, z);
        case HostControl::point2D:
            return instance.setPoint(control.index, double{x} / downsample, double{y} / downsample);
        case HostControl::color:
            return instance.setColor(control.index, {.alpha = w, .red = x, .green = y, .blue = z});
        case HostControl::checkbox:
            return instance.setCheckbox(control.index, value.integer != 0);
        case HostControl::popup:
            return instance.setPopup(control.index, value.integer);
        default:
            return;  // has no value
    }
}

void SetDefaultPosition(host::HostInstance& instance, const Control& control, std::uint32_t width,
                        std::uint32_t height) {
    const PF_PointDef& point = instance.param(control.index).u.td;
    const auto share = [](PF_Fixed registered) { return static_cast<std::uint32_t>(registered) / 4294967296.0; };
    instance.setPoint(control.index, share(point.x_dephault) * width, share(point.y_dephault) * height);
}

}  // namespace quillon::cli
