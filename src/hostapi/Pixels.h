#pragma once

#include "hostapi/BaseTypes.h"

// In memory a pixel is A, R, G, B at every depth.

// 8 bits a channel.
struct PF_Pixel {
    A_u_char alpha;
    A_u_char red;
    A_u_char green;
    A_u_char blue;
};
typedef PF_Pixel PF_Pixel8;
typedef PF_Pixel PF_UnionablePixel;

// Channels from 0 to 32768.
struct PF_Pixel16 {
    A_u_short alpha;
    A_u_short red;
    A_u_short green;
    A_u_short blue;
};

// Floats, nominally 0 to 1.
struct PF_PixelFloat {
    A_FpShort alpha;
    A_FpShort red;
    A_FpShort green;
    A_FpShort blue;
};

// The pixels of a world of any depth.
struct PF_PixelOpaque;
typedef PF_PixelOpaque* PF_PixelPtr;
