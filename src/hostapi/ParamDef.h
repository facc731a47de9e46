#pragma once

#include "hostapi/ParamValues.h"
#include "hostapi/World.h"

// A control with its value, as the host and the effect hand it to each other.

// The layer comes first: it is the largest member, so `PF_ParamDef def{};` clears all of the union.
union PF_ParamDefUnion {
    PF_LayerDef ld;
    PF_SliderDef sd;
    PF_FixedSliderDef fd;
    PF_AngleDef ad;
    PF_CheckBoxDef bd;
    PF_ColorDef cd;
    PF_PointDef td;
    PF_PopupDef pd;
    PF_FloatSliderDef fs_d;
    PF_ArbitraryDef arb_d;
    PF_PathDef path_d;
    PF_ButtonDef button_d;
    PF_Point3DDef point3d_d;
};

// The field for the control's name; the vendor's headers spell it by this macro as well.
#define PF_DEF_NAME name

// A control: how it is registered, and its value. The kind decides which member of the union holds.
struct PF_ParamDef {
    union {
        A_long id;                    // when the control is added
        PF_ChangeFlags change_flags;  // when a handler changes its value
    } uu;
    PF_ParamUIFlags ui_flags;
    A_short ui_width;
    A_short ui_height;
    PF_ParamType param_type;
    A_char PF_DEF_NAME[32];
    PF_ParamFlags flags;
    A_long unused;
    PF_ParamDefUnion u;
};
typedef PF_ParamDef* PF_ParamDefPtr;
