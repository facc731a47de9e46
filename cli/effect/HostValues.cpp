#include "cli/effect/HostValues.h"

namespace quillon::cli {

void SetControl(host::HostInstance& instance, const Control& control, const ControlValue& value,
                std::uint32_t downsample) {
    const auto& [x, y, z, w] = value.numbers;
    switch (control.declared.kind) {
        case FLOAT:
            return instance.setFloat(control.index, x);
        case ANGLE:
            return instance.setAngle(control.index, x);
        case POINT:
            return instance.setPoint3D(control.index, x, y, z);
        case POINT2D:
            return instance.setPoint(control.index, double{x} / downsample, double{y} / downsample);
        case COLOR:
            return instance.setColor(control.index, {.alpha = w, .red = x, .green = y, .blue = z});
        case BOOL:
            return instance.setCheckbox(control.index, value.integer != 0);
        case POPUP:
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
