#pragma once

#include "hostapi/EffectFlags.h"
#include "hostapi/Geometry.h"
#include "hostapi/Sound.h"

enum : A_long { PF_MAX_EFFECT_MSG_LEN = 255 };  // characters, the closing zero not counted

// What an effect answers.
struct PF_OutData {
    A_u_long my_version;
    A_char name[32];
    PF_Handle global_data;
    A_long num_params;
    PF_Handle sequence_data;
    A_long flat_sdata_size;
    PF_Handle frame_data;
    A_long width;
    A_long height;
    PF_Point origin;
    PF_OutFlags out_flags;
    A_char return_msg[PF_MAX_EFFECT_MSG_LEN + 1];
    A_long start_sampL;
    A_long dur_sampL;
    PF_SoundWorld dest_snd;
    PF_OutFlags2 out_flags2;
};
