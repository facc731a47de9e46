#pragma once

#include "hostapi/Geometry.h"
#include "hostapi/Pixels.h"

// A picture in the host's memory: top row first, `rowbytes` from row to row, which may be more than the pixels take.

typedef A_long PF_WorldFlags;

enum : A_long { PF_WorldFlag_DEEP = 1, PF_WorldFlag_WRITEABLE = 2 };

enum : A_long { PF_LayerDefault_MYSELF = -1, PF_LayerDefault_NONE = 0 };

// `data` points at pixels of the world's depth, which its suites give; a null `data` has no pixels.
struct PF_LayerDef {
    void* reserved0;
    void* reserved1;
    PF_WorldFlags world_flags;
    PF_PixelPtr data;
    A_long rowbytes;
    A_long width;
    A_long height;
    PF_LRect extent_hint;
    void* platform_ref;
    A_long reserved_long1;
    void* reserved_long4;
    PF_RationalScale pix_aspect_ratio;
    void* reserved_long2;
    A_long origin_x;
    A_long origin_y;
    A_long reserved_long3;
    A_long dephault;
};
typedef PF_LayerDef PF_EffectWorld;
