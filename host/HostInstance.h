#pragma once

#include <map>
#include <memory>
#include <vector>

#include "host/HostSettings.h"
#include "host/World.h"
#include "hostapi/HostApi.h"

namespace quillon::host {

class HostSession;

// One application of the effect: its block of memory, its place in time and the values of its controls, by host index
// from 1. Made and owned by a HostSession. One thread at a time.
class HostInstance {
public:
    HostInstance(HostSession& owner, int instanceNumber);
    HostInstance(const HostInstance&) = delete;
    HostInstance& operator=(const HostInstance&) = delete;

    // The control as the host would hand it out; throws std::out_of_range for an index that has none.
    PF_ParamDef& param(PF_ParamIndex index) { return params.at(index); }
    const PF_ParamDef& param(PF_ParamIndex index) const { return params.at(index); }
    bool hasParam(PF_ParamIndex index) const { return params.contains(index); }

    // Values by kind. A kind that does not fit throws std::logic_error.
    void setFloat(PF_ParamIndex index, double value);
    void setAngle(PF_ParamIndex index, double degrees);
    void setCheckbox(PF_ParamIndex index, bool isChecked);
    void setPopup(PF_ParamIndex index, A_long entryFromOne);
    void setPoint(PF_ParamIndex index, double x, double y);  // pixels of the downsampled layer, kept as 16.16
    void setPoint3D(PF_ParamIndex index, double x, double y, double z);
    void setColor(PF_ParamIndex index, const PF_PixelFloat& color);      // 0 to 1
    void setLayer(PF_ParamIndex index, std::shared_ptr<World> picture);  // null: "None"

    // The color of a COLOR control as floats: as set, or as its 8-bit value has it.
    PF_PixelFloat color(PF_ParamIndex index) const;
    std::shared_ptr<World> layer(PF_ParamIndex index) const;

    // A value that the effect itself has changed.
    void takeOver(PF_ParamIndex index, const PF_ParamDef& changed);
    // All values of another instance.
    void copyValues(const HostInstance& other);

    HostSession& session;
    const int number;  // from 1
    PF_Handle sequenceData = nullptr;
    PF_Handle flatData = nullptr;  // what FLATTEN last gave; the block of sequenceData stays alive

    A_long currentTime;
    A_long timeStep;
    A_u_long timeScale;

private:
    PF_ParamDef& paramOfType(PF_ParamIndex index, PF_ParamType type);

    std::map<PF_ParamIndex, PF_ParamDef> params;
    std::map<PF_ParamIndex, PF_PixelFloat> colors;
    std::map<PF_ParamIndex, std::shared_ptr<World>> layers;
};

}  // namespace quillon::host
