#pragma once

#include "hostapi/BaseTypes.h"

// What an effect says about itself to the host: PF_OutData's out_flags and out_flags2, and the same words in the PiPL.

typedef A_long PF_InFlags;
typedef A_long PF_OutFlags;
typedef A_long PF_OutFlags2;

enum : A_long {
    PF_OutFlag_NONE = 0,
    PF_OutFlag_KEEP_RESOURCE_OPEN = 0x1,
    PF_OutFlag_WIDE_TIME_INPUT = 0x2,
    PF_OutFlag_NON_PARAM_VARY = 0x4,
    PF_OutFlag_SEQUENCE_DATA_NEEDS_FLATTENING = 0x10,
    PF_OutFlag_I_DO_DIALOG = 0x20,
    PF_OutFlag_USE_OUTPUT_EXTENT = 0x40,
    PF_OutFlag_SEND_DO_DIALOG = 0x80,
    PF_OutFlag_DISPLAY_ERROR_MESSAGE = 0x100,
    PF_OutFlag_I_EXPAND_BUFFER = 0x200,
    PF_OutFlag_PIX_INDEPENDENT = 0x400,
    PF_OutFlag_I_WRITE_INPUT_BUFFER = 0x800,
    PF_OutFlag_I_SHRINK_BUFFER = 0x1000,
    PF_OutFlag_WORKS_IN_PLACE = 0x2000,
    PF_OutFlag_CUSTOM_UI = 0x8000,
    PF_OutFlag_REFRESH_UI = 0x20000,
    PF_OutFlag_NOP_RENDER = 0x40000,
    PF_OutFlag_I_USE_SHUTTER_ANGLE = 0x80000,
    PF_OutFlag_I_USE_AUDIO = 0x100000,
    PF_OutFlag_FORCE_RERENDER = 0x400000,  // bit 22 by the best reading; no host at hand has confirmed it
    PF_OutFlag_DEEP_COLOR_AWARE = 0x2000000,
    PF_OutFlag_SEND_UPDATE_PARAMS_UI = 0x4000000
};

enum : A_long {
    PF_OutFlag2_NONE = 0,
    PF_OutFlag2_SUPPORTS_SMART_RENDER = 0x400,
    PF_OutFlag2_FLOAT_COLOR_AWARE = 0x1000,
    PF_OutFlag2_PPRO_DO_NOT_CLONE_SEQUENCE_DATA_FOR_RENDER = 0x8000
};
