#pragma once

#include "hostapi/BaseTypes.h"

// The bits of an effect's version word, PF_OutData's my_version. The major number is split: its low three bits are
// below bit 22, the rest from bit 26 on.

enum : A_u_long {
    PF_Vers_BUILD_BITS = 0x1FF,
    PF_Vers_BUILD_SHIFT = 0,
    PF_Vers_STAGE_BITS = 0x3,
    PF_Vers_STAGE_SHIFT = 9,
    PF_Vers_BUGFIX_BITS = 0xF,
    PF_Vers_BUGFIX_SHIFT = 11,
    PF_Vers_SUBVERS_BITS = 0xF,
    PF_Vers_SUBVERS_SHIFT = 15,
    PF_Vers_VERS_BITS = 0x7,
    PF_Vers_VERS_SHIFT = 19,
    PF_Vers_VERS_HIGH_BITS = 0xF,
    PF_Vers_VERS_HIGH_SHIFT = 26,
    PF_Vers_VERS_LOW_SHIFT = 3  // how many bits of the major number are below the high part
};

typedef A_long PF_Stage;

enum : A_long { PF_Stage_DEVELOP = 0, PF_Stage_ALPHA = 1, PF_Stage_BETA = 2, PF_Stage_RELEASE = 3 };
