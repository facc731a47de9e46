#pragma once

#include "hostapi/BaseTypes.h"

// In pixels; right and bottom are exclusive.
struct PF_LRect {
    A_long left;
    A_long top;
    A_long right;
    A_long bottom;
};
typedef PF_LRect PF_Rect;
typedef PF_LRect PF_UnionableRect;

// 32 bits a side on every 64-bit host.
struct PF_Point {
    A_long h;
    A_long v;
};

// In units of 1/65536 pixel.
struct PF_FixedPoint {
    PF_Fixed x;
    PF_Fixed y;
};

// num / den.
struct PF_RationalScale {
    A_long num;
    A_u_long den;
};
