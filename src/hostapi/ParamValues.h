#pragma once

#include "hostapi/Geometry.h"
#include "hostapi/ParamFlags.h"
#include "hostapi/Pixels.h"

// What each kind of control holds: the members of PF_ParamDefUnion except the layer.

// An integer.
struct PF_SliderDef {
    A_long value;
    A_char value_str[32];
    A_char value_desc[32];
    A_long valid_min;
    A_long valid_max;
    A_long slider_min;
    A_long slider_max;
    A_long dephault;
};

// A number in units of 1/65536.
struct PF_FixedSliderDef {
    PF_Fixed value;
    A_char value_str[32];
    A_char value_desc[32];
    PF_Fixed valid_min;
    PF_Fixed valid_max;
    PF_Fixed slider_min;
    PF_Fixed slider_max;
    PF_Fixed dephault;
    A_short precision;
    A_short display_flags;
};

// Degrees. Hosts ignore the limits.
struct PF_AngleDef {
    PF_Fixed value;
    PF_Fixed dephault;
    PF_Fixed valid_min;
    PF_Fixed valid_max;
};

// 1 or 0, with a text beside the box.
struct PF_CheckBoxDef {
    A_long value;
    PF_Boolean dephault;
    A_char reserved;
    A_short reserved1;
    union {
        const A_char* nameptr;
    } u;
};

// 8 bits a channel.
struct PF_ColorDef {
    PF_UnionablePixel value;
    PF_UnionablePixel dephault;
};

// Pixels in units of 1/65536. A default is given in another form, see the shell.
struct PF_PointDef {
    PF_Fixed x_value;
    PF_Fixed y_value;
    A_char reserved[3];
    PF_Boolean restrict_bounds;  // the last of the four bytes
    PF_Fixed x_dephault;
    PF_Fixed y_dephault;
};

// The entries are one text, separated by '|'; the first entry's number is 1.
struct PF_PopupDef {
    A_long value;
    A_short num_choices;
    A_short dephault;
    union {
        const A_char* namesptr;
    } u;
};

// A number, with the range that can be typed and the range of the slider.
struct PF_FloatSliderDef {
    A_FpLong value;
    A_FpLong phase;
    A_char value_desc[32];
    A_FpShort valid_min;
    A_FpShort valid_max;
    A_FpShort slider_min;
    A_FpShort slider_max;
    A_FpShort dephault;
    A_short precision;
    A_short display_flags;
    A_u_long fs_flags;
    A_FpShort curve_tolerance;
    PF_Boolean useExponent;
    A_FpShort exponent;
};

// Data of the effect's own making.
struct PF_ArbitraryDef {
    A_short id;
    A_short pad;
    PF_Handle dephault;
    PF_Handle value;
    void* refconPV;
};

typedef A_u_long PF_PathID;

// The number of one of the layer's masks.
struct PF_PathDef {
    PF_PathID path_id;
    A_long reserved0;
    A_long dephault;
};

// No value; the text on the button.
struct PF_ButtonDef {
    A_long value;
    union {
        const A_char* namesptr;
    } u;
};

// Pixels.
struct PF_Point3DDef {
    A_FpLong x_value;
    A_FpLong y_value;
    A_FpLong z_value;
    A_FpLong x_dephault;
    A_FpLong y_dephault;
    A_FpLong z_dephault;
    A_char reserved[16];
};
