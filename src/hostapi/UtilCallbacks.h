#pragma once

#include "hostapi/AnsiCallbacks.h"
#include "hostapi/ColorCallbacks.h"
#include "hostapi/World.h"

typedef A_long PF_PlatDataID;

enum : A_long {
    PF_PlatData_MAIN_WND = 0,
    PF_PlatData_EXE_FILE_PATH_DEPRECATED = 1,
    PF_PlatData_RES_FILE_PATH_DEPRECATED = 2,
    PF_PlatData_RES_REFNUM = 3,
    PF_PlatData_RES_DLLINSTANCE = 4  // by its place after the one before
};

// The host's services around pixels and memory. Only the entries with a signature are used here. The first eleven
// entries are certain; the order of the others is the best reading, and it ends where the record is known to end.
struct PF_UtilCallbacks {
    void* begin_sampling;
    void* subpixel_sample;
    void* area_sample;
    void* get_batch_func_is_deprecated;
    void* end_sampling;
    void* composite_rect;
    void* blend;
    void* convolve;
    // A null rectangle is the whole world.
    PF_Err (*copy)(PF_ProgPtr effect_ref, PF_EffectWorld* src, PF_EffectWorld* dst, PF_Rect* src_rect,
                   PF_Rect* dst_rect);
    PF_Err (*fill)(PF_ProgPtr effect_ref, const PF_Pixel* color, const PF_Rect* dst_rect, PF_EffectWorld* world);
    void* gaussian_kernel;
    void* iterate;
    void* premultiply;
    void* premultiply_color;
    void* new_world;
    void* dispose_world;
    void* iterate_origin;
    void* iterate_lut;
    void* transfer_rect;
    void* transform_world;
    PF_Handle (*host_new_handle)(A_HandleSize size);
    void* (*host_lock_handle)(PF_Handle handle);
    void (*host_unlock_handle)(PF_Handle handle);
    void (*host_dispose_handle)(PF_Handle handle);
    void* get_callback_addr;
    void* app;
    PF_ANSICallbacks ansi;
    PF_ColorCallbacks colorCB;
    PF_Err (*get_platform_data)(PF_ProgPtr effect_ref, PF_PlatDataID which, void* data);
    void* host_get_handle_size;
    void* iterate_origin_non_clip_src;
    void* iterate_generic;
    void* host_resize_handle;
    void* subpixel_sample16;
    void* area_sample16;
    void* fill16;
    void* premultiply_color16;
    void* iterate16;
    void* iterate_origin16;
    void* iterate_origin_non_clip_src16;
    void* get_pixel_data8;
    void* get_pixel_data16;
    void* reserved;
};
