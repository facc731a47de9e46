#pragma once

#include <cstdint>

// Widths are fixed and the same on Linux and 64-bit Windows: `long` occurs nowhere in this folder.

typedef char A_char;
typedef std::uint8_t A_u_char;
typedef std::int16_t A_short;
typedef std::uint16_t A_u_short;
typedef std::int32_t A_long;
typedef std::uint32_t A_u_long;
typedef std::int64_t A_longlong;
typedef std::uint64_t A_u_longlong;
typedef float A_FpShort;
typedef double A_FpLong;
typedef std::int64_t A_intptr_t;
typedef std::uint64_t A_HandleSize;
typedef A_u_char A_Boolean;
typedef A_long A_Err;

typedef A_long PF_Err;
typedef A_u_char PF_Boolean;
typedef A_long PF_ParamIndex;
typedef A_long PF_Fixed;  // 16.16
typedef A_long PF_Field;
typedef A_long PF_Quality;
typedef A_long PF_ChannelMask;

// A handle points to the host's pointer to the block; only the host's lock gives an address to use.
typedef char** PF_Handle;

struct PF_ProgOpaque;
typedef PF_ProgOpaque* PF_ProgPtr;

// The version of the effect API that the host speaks, not the application's.
struct PF_SpecVersion {
    A_short major;
    A_short minor;
};

// value / scale seconds.
struct A_Time {
    A_long value;
    A_u_long scale;
};

// num / den.
struct A_Ratio {
    A_long num;
    A_u_long den;
};

// Which rows of an interlaced frame are meant.
enum : A_long { PF_Field_FRAME = 0, PF_Field_UPPER = 1, PF_Field_LOWER = 2 };

// What the user has chosen for the layer.
enum : A_long { PF_Quality_DRAWING_AUDIO = -1, PF_Quality_LO = 0, PF_Quality_HI = 1 };

enum : A_long {
    PF_ChannelMask_ALPHA = 1,
    PF_ChannelMask_RED = 2,
    PF_ChannelMask_GREEN = 4,
    PF_ChannelMask_BLUE = 8,
    PF_ChannelMask_ARGB = 15
};
