#pragma once

#include "hostapi/BaseTypes.h"

// Nothing here makes sound, but a PF_SoundWorld is part of PF_InData and in PF_OutData. Were the three small
// fields 32 bits wide, the world would take 40 bytes and move pica_basicP and out_flags2 by 8.

struct PF_SoundFormatInfo {
    A_FpLong rateF;
    A_short num_channels;
    A_short format;
    A_short sample_size;
};

struct PF_SoundWorld {
    PF_SoundFormatInfo fi;
    A_long num_samples;
    void* dataP;
};
