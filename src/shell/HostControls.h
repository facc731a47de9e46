#pragma once

#include <array>
#include <cstdint>
#include <cstring>

#include "hostapi/HostApi.h"
#include "parameter/Parameter.h"
#include "shell/InputTransfer.h"
#include "shell/Suites.h"

namespace quillon {

// A control's value in the engine's form.
struct EngineValue {
    std::array<std::uint32_t, 4> words{};  // as in Parameter::value
    LayerPixels layer;                     // the host's memory, for as long as the control is checked out

    void setFloat(std::size_t index, float number) { std::memcpy(&words[index], &number, sizeof number); }
    void setInt(std::int32_t number) { std::memcpy(words.data(), &number, sizeof number); }
};

// What a host's value is read from, and with.
struct ValueRequest {
    PF_InData& in;
    PF_ParamDef& def;     // checked out
    std::uint32_t flags;  // ParameterFlag of the script's control
    SuiteCache& cache;
};

// A control of the host: how it is registered, and how its value is read. One row of one table.
struct HostControlType {
    HostControl control;
    PF_ParamType type;  // PF_Param_
    A_long flags;       // PF_ParamFlag_
    A_long idOffset;    // from the host index to uu.id
    // Fills the members of `def.u` with what the script has declared; the others are set already.
    void (*fill)(PF_ParamDef& def, const Parameter& declared);
    // Reads the host's value. Throws the int 516 without "PF ColorParamSuite" for a color, and the int 13 without
    // "PF Pixel Data Suite" for a layer.
    void (*read)(const ValueRequest& request, EngineValue& value);
    bool isNamed = true;
    bool keepsFirstIndex = true;  // the map of first host indices by kind has it
};

// The row of a control, or the first row of a record's type, which decides how a value is read. Null where the host has
// nothing of the kind.
const HostControlType* FindHostControl(HostControl control);
const HostControlType* FindHostControl(PF_ParamType type);

}  // namespace quillon
