#pragma once

#include "hostapi/World.h"

// The records of the smart route's two selectors.

// Which part of a layer is wanted, in the layer's coordinates.
struct PF_RenderRequest {
    PF_LRect rect;
    PF_Field field;
    PF_ChannelMask channel_mask;
    PF_Boolean preserve_rgb_of_zero_alpha;
    A_char unused[3];
    A_long reserved[4];
};

// Certain up to `par`. `solid` may be one byte, which makes the host's record 76 bytes; ours keeps 80, so that the host
// never writes past it. Read the two rectangles only.
struct PF_CheckoutResult {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_RationalScale par;
    A_long solid;
    PF_Boolean reservedB[3];
    A_long ref_width;
    A_long ref_height;
    A_long reserved[6];
};

// Hosts from before GPU rendering end their record after `bitdepth`: read nothing after it.
struct PF_PreRenderInput {
    PF_RenderRequest output_request;
    A_short bitdepth;
    const void* gpu_data;
    A_long what_gpu;
    A_u_long device_index;
};

typedef A_short PF_RenderOutputFlags;

enum : A_long { PF_RenderOutputFlag_RETURNS_EXTRA_PIXELS = 1, PF_RenderOutputFlag_GPU_RENDER_POSSIBLE = 2 };

// Called by the host once the frame is over.
typedef void (*PF_DeletePreRenderDataFunc)(void* pre_render_data);

// `flags` may be 32 bits wide at offset 36: whoever fills the record clears bytes 32 to 39 before writing it. The
// pointers stay where they are either way.
struct PF_PreRenderOutput {
    PF_LRect result_rect;
    PF_LRect max_result_rect;
    PF_Boolean solid;
    PF_Boolean reserved;
    PF_RenderOutputFlags flags;
    void* pre_render_data;
    PF_DeletePreRenderDataFunc delete_pre_render_data_func;
};

// Older hosts lack `GuidMixInPtr`.
struct PF_PreRenderCallbacks {
    PF_Err (*checkout_layer)(PF_ProgPtr effect_ref, PF_ParamIndex index, A_long checkout_idL,
                             const PF_RenderRequest* req, A_long what_time, A_long time_step, A_u_long time_scale,
                             PF_CheckoutResult* result);
    void* GuidMixInPtr;
};

// The record of a PF_Cmd_SMART_PRE_RENDER.
struct PF_PreRenderExtra {
    PF_PreRenderInput* input;
    PF_PreRenderOutput* output;
    PF_PreRenderCallbacks* cb;
};

// What was settled in the size phase.
struct PF_SmartRenderInput {
    PF_RenderRequest output_request;
    A_short bitdepth;
    void* pre_render_data;
    const void* gpu_data;
    A_long what_gpu;
    A_u_long device_index;
};

// Pixels of a layer by its checkout id, which are checked in again, and the world to write..
struct PF_SmartRenderCallbacks {
    PF_Err (*checkout_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL, PF_EffectWorld** pixels);
    PF_Err (*checkin_layer_pixels)(PF_ProgPtr effect_ref, A_long checkout_idL);
    PF_Err (*checkout_output)(PF_ProgPtr effect_ref, PF_EffectWorld** output);
};

// The record of a PF_Cmd_SMART_RENDER.
struct PF_SmartRenderExtra {
    PF_SmartRenderInput* input;
    PF_SmartRenderCallbacks* cb;
};
