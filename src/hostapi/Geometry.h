#pragma once

#include "hostapi/BaseTypes.h"

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

struct PF_FixedPoint {
    PF_Fixed x;
    PF_Fixed y;
};

struct PF_RationalScale {
    A_long num;
    A_u_long den;
};
