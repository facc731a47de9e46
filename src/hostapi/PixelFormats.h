#pragma once

#include "hostapi/BaseTypes.h"

// Four-character codes with the first character in the lowest byte: in memory they read as text.

typedef A_long PF_PixelFormat;

enum : A_long {
    PF_PixelFormat_ARGB32 = 0x62677261,
    PF_PixelFormat_ARGB64 = 0x36316561,
    PF_PixelFormat_ARGB128 = 0x32336561,
    PF_PixelFormat_INVALID = 0x66646162  // "badf"
};

typedef A_u_long PrPixelFormat;

enum : A_u_long {
    PrPixelFormat_BGRA_4444_8u = 0x61726762,
    PrPixelFormat_ARGB_4444_8u = 0x62677261,
    PrPixelFormat_XRGB_4444_8u = 0x62677278,
    PrPixelFormat_BGRA_4444_16u = 0x61726742,
    PrPixelFormat_ARGB_4444_16u = 0x62677241,
    PrPixelFormat_XRGB_4444_16u = 0x62677258,
    PrPixelFormat_BGRA_4444_32f = 0x61724742,
    PrPixelFormat_ARGB_4444_32f = 0x62675241,
    PrPixelFormat_XRGB_4444_32f = 0x62675258
};
