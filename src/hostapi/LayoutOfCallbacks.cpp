#include "hostapi/LayoutCheck.h"

// The tables of callbacks that come by value or by pointer in the in record.

#ifndef QUILLON_VENDOR_HEADERS

CHECK_SIZE(PF_InteractCallbacks, 176);
CHECK_ENTRY(PF_InteractCallbacks, checkout_param, 0);
CHECK_ENTRY(PF_InteractCallbacks, checkin_param, 1);
CHECK_ENTRY(PF_InteractCallbacks, add_param, 2);
CHECK_ENTRY(PF_InteractCallbacks, abort, 3);
CHECK_ENTRY(PF_InteractCallbacks, progress, 4);
CHECK_ENTRY(PF_InteractCallbacks, register_ui, 5);
CHECK_ENTRY(PF_InteractCallbacks, checkout_layer_audio, 6);
CHECK_ENTRY(PF_InteractCallbacks, checkin_layer_audio, 7);
CHECK_ENTRY(PF_InteractCallbacks, get_audio_data, 8);
CHECK_FIELD(PF_InteractCallbacks, reserved_str, 72, 24);
CHECK_FIELD(PF_InteractCallbacks, reserved, 96, 80);

CHECK_SIZE(PF_ANSICallbacks, 160);
CHECK_ENTRY(PF_ANSICallbacks, atan, 0);
CHECK_ENTRY(PF_ANSICallbacks, atan2, 1);
CHECK_ENTRY(PF_ANSICallbacks, ceil, 2);
CHECK_ENTRY(PF_ANSICallbacks, cos, 3);
CHECK_ENTRY(PF_ANSICallbacks, exp, 4);
CHECK_ENTRY(PF_ANSICallbacks, fabs, 5);
CHECK_ENTRY(PF_ANSICallbacks, floor, 6);
CHECK_ENTRY(PF_ANSICallbacks, fmod, 7);
CHECK_ENTRY(PF_ANSICallbacks, hypot, 8);
CHECK_ENTRY(PF_ANSICallbacks, log, 9);
CHECK_ENTRY(PF_ANSICallbacks, log10, 10);
CHECK_ENTRY(PF_ANSICallbacks, pow, 11);
CHECK_ENTRY(PF_ANSICallbacks, sin, 12);
CHECK_ENTRY(PF_ANSICallbacks, sqrt, 13);
CHECK_ENTRY(PF_ANSICallbacks, tan, 14);
CHECK_ENTRY(PF_ANSICallbacks, sprintf, 15);
CHECK_ENTRY(PF_ANSICallbacks, strcpy, 16);
CHECK_ENTRY(PF_ANSICallbacks, asin, 17);
CHECK_ENTRY(PF_ANSICallbacks, acos, 18);
CHECK_FIELD(PF_ANSICallbacks, ansi_procs, 152, 4);

CHECK_SIZE(PF_ColorCallbacks, 64);
CHECK_ENTRY(PF_ColorCallbacks, RGBtoHLS, 0);
CHECK_ENTRY(PF_ColorCallbacks, HLStoRGB, 1);
CHECK_ENTRY(PF_ColorCallbacks, RGBtoYIQ, 2);
CHECK_ENTRY(PF_ColorCallbacks, YIQtoRGB, 3);
CHECK_ENTRY(PF_ColorCallbacks, Luminance, 4);
CHECK_ENTRY(PF_ColorCallbacks, Hue, 5);
CHECK_ENTRY(PF_ColorCallbacks, Lightness, 6);
CHECK_ENTRY(PF_ColorCallbacks, Saturation, 7);

CHECK_SIZE(PF_UtilCallbacks, 552);
CHECK_FIELD(PF_UtilCallbacks, begin_sampling, 0, 8);
CHECK_FIELD(PF_UtilCallbacks, subpixel_sample, 8, 8);
CHECK_FIELD(PF_UtilCallbacks, area_sample, 16, 8);
CHECK_FIELD(PF_UtilCallbacks, get_batch_func_is_deprecated, 24, 8);
CHECK_FIELD(PF_UtilCallbacks, end_sampling, 32, 8);
CHECK_FIELD(PF_UtilCallbacks, composite_rect, 40, 8);
CHECK_FIELD(PF_UtilCallbacks, blend, 48, 8);
CHECK_FIELD(PF_UtilCallbacks, convolve, 56, 8);
CHECK_FIELD(PF_UtilCallbacks, copy, 64, 8);
CHECK_FIELD(PF_UtilCallbacks, fill, 72, 8);
CHECK_FIELD(PF_UtilCallbacks, gaussian_kernel, 80, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate, 88, 8);
CHECK_FIELD(PF_UtilCallbacks, premultiply, 96, 8);
CHECK_FIELD(PF_UtilCallbacks, premultiply_color, 104, 8);
CHECK_FIELD(PF_UtilCallbacks, new_world, 112, 8);
CHECK_FIELD(PF_UtilCallbacks, dispose_world, 120, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate_origin, 128, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate_lut, 136, 8);
CHECK_FIELD(PF_UtilCallbacks, transfer_rect, 144, 8);
CHECK_FIELD(PF_UtilCallbacks, transform_world, 152, 8);
CHECK_FIELD(PF_UtilCallbacks, host_new_handle, 160, 8);
CHECK_FIELD(PF_UtilCallbacks, host_lock_handle, 168, 8);
CHECK_FIELD(PF_UtilCallbacks, host_unlock_handle, 176, 8);
CHECK_FIELD(PF_UtilCallbacks, host_dispose_handle, 184, 8);
CHECK_FIELD(PF_UtilCallbacks, get_callback_addr, 192, 8);
CHECK_FIELD(PF_UtilCallbacks, app, 200, 8);
CHECK_FIELD(PF_UtilCallbacks, ansi, 208, 160);
CHECK_FIELD(PF_UtilCallbacks, colorCB, 368, 64);
CHECK_FIELD(PF_UtilCallbacks, get_platform_data, 432, 8);
CHECK_FIELD(PF_UtilCallbacks, host_get_handle_size, 440, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate_origin_non_clip_src, 448, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate_generic, 456, 8);
CHECK_FIELD(PF_UtilCallbacks, host_resize_handle, 464, 8);
CHECK_FIELD(PF_UtilCallbacks, subpixel_sample16, 472, 8);
CHECK_FIELD(PF_UtilCallbacks, area_sample16, 480, 8);
CHECK_FIELD(PF_UtilCallbacks, fill16, 488, 8);
CHECK_FIELD(PF_UtilCallbacks, premultiply_color16, 496, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate16, 504, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate_origin16, 512, 8);
CHECK_FIELD(PF_UtilCallbacks, iterate_origin_non_clip_src16, 520, 8);
CHECK_FIELD(PF_UtilCallbacks, get_pixel_data8, 528, 8);
CHECK_FIELD(PF_UtilCallbacks, get_pixel_data16, 536, 8);
CHECK_FIELD(PF_UtilCallbacks, reserved, 544, 8);

CHECK_SIZE(SPBasicSuite, 56);
CHECK_ENTRY(SPBasicSuite, AcquireSuite, 0);
CHECK_ENTRY(SPBasicSuite, ReleaseSuite, 1);
CHECK_ENTRY(SPBasicSuite, IsEqual, 2);
CHECK_ENTRY(SPBasicSuite, AllocateBlock, 3);
CHECK_ENTRY(SPBasicSuite, FreeBlock, 4);
CHECK_ENTRY(SPBasicSuite, ReallocateBlock, 5);
CHECK_ENTRY(SPBasicSuite, Undefined, 6);

#endif
