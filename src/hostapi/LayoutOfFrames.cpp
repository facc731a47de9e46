#include "hostapi/LayoutCheck.h"

// What comes with every selector: the small types, the in and out records, worlds.

#ifndef QUILLON_VENDOR_HEADERS

static_assert(sizeof(void*) == 8 && sizeof(PF_Handle) == 8 && sizeof(PF_ProgPtr) == 8);

CHECK_SIZE(PF_LRect, 16);
CHECK_FIELD(PF_LRect, left, 0, 4);
CHECK_FIELD(PF_LRect, top, 4, 4);
CHECK_FIELD(PF_LRect, right, 8, 4);
CHECK_FIELD(PF_LRect, bottom, 12, 4);

CHECK_SIZE(PF_Point, 8);
CHECK_FIELD(PF_Point, h, 0, 4);
CHECK_FIELD(PF_Point, v, 4, 4);

CHECK_SIZE(PF_FixedPoint, 8);
CHECK_FIELD(PF_FixedPoint, x, 0, 4);
CHECK_FIELD(PF_FixedPoint, y, 4, 4);

CHECK_SIZE(PF_RationalScale, 8);
CHECK_FIELD(PF_RationalScale, num, 0, 4);
CHECK_FIELD(PF_RationalScale, den, 4, 4);

CHECK_SIZE(PF_Pixel, 4);
CHECK_FIELD(PF_Pixel, alpha, 0, 1);
CHECK_FIELD(PF_Pixel, red, 1, 1);
CHECK_FIELD(PF_Pixel, green, 2, 1);
CHECK_FIELD(PF_Pixel, blue, 3, 1);

CHECK_SIZE(PF_Pixel16, 8);
CHECK_FIELD(PF_Pixel16, alpha, 0, 2);
CHECK_FIELD(PF_Pixel16, red, 2, 2);
CHECK_FIELD(PF_Pixel16, green, 4, 2);
CHECK_FIELD(PF_Pixel16, blue, 6, 2);

CHECK_SIZE(PF_PixelFloat, 16);
CHECK_FIELD(PF_PixelFloat, alpha, 0, 4);
CHECK_FIELD(PF_PixelFloat, red, 4, 4);
CHECK_FIELD(PF_PixelFloat, green, 8, 4);
CHECK_FIELD(PF_PixelFloat, blue, 12, 4);

CHECK_SIZE(PF_SpecVersion, 4);
CHECK_FIELD(PF_SpecVersion, major, 0, 2);
CHECK_FIELD(PF_SpecVersion, minor, 2, 2);

CHECK_SIZE(A_Time, 8);
CHECK_FIELD(A_Time, value, 0, 4);
CHECK_FIELD(A_Time, scale, 4, 4);

CHECK_SIZE(A_Ratio, 8);
CHECK_FIELD(A_Ratio, num, 0, 4);
CHECK_FIELD(A_Ratio, den, 4, 4);

CHECK_SIZE(PF_SoundFormatInfo, 16);
CHECK_FIELD(PF_SoundFormatInfo, rateF, 0, 8);
CHECK_FIELD(PF_SoundFormatInfo, num_channels, 8, 2);
CHECK_FIELD(PF_SoundFormatInfo, format, 10, 2);
CHECK_FIELD(PF_SoundFormatInfo, sample_size, 12, 2);

CHECK_SIZE(PF_SoundWorld, 32);
CHECK_FIELD(PF_SoundWorld, fi, 0, 16);
CHECK_FIELD(PF_SoundWorld, num_samples, 16, 4);
CHECK_FIELD(PF_SoundWorld, dataP, 24, 8);

CHECK_SIZE(PF_LayerDef, 120);
CHECK_FIELD(PF_LayerDef, reserved0, 0, 8);
CHECK_FIELD(PF_LayerDef, reserved1, 8, 8);
CHECK_FIELD(PF_LayerDef, world_flags, 16, 4);
CHECK_FIELD(PF_LayerDef, data, 24, 8);
CHECK_FIELD(PF_LayerDef, rowbytes, 32, 4);
CHECK_FIELD(PF_LayerDef, width, 36, 4);
CHECK_FIELD(PF_LayerDef, height, 40, 4);
CHECK_FIELD(PF_LayerDef, extent_hint, 44, 16);
CHECK_FIELD(PF_LayerDef, platform_ref, 64, 8);
CHECK_FIELD(PF_LayerDef, reserved_long1, 72, 4);
CHECK_FIELD(PF_LayerDef, reserved_long4, 80, 8);
CHECK_FIELD(PF_LayerDef, pix_aspect_ratio, 88, 8);
CHECK_FIELD(PF_LayerDef, reserved_long2, 96, 8);
CHECK_FIELD(PF_LayerDef, origin_x, 104, 4);
CHECK_FIELD(PF_LayerDef, origin_y, 108, 4);
CHECK_FIELD(PF_LayerDef, reserved_long3, 112, 4);
CHECK_FIELD(PF_LayerDef, dephault, 116, 4);

CHECK_SIZE(PF_InData, 408);
CHECK_FIELD(PF_InData, inter, 0, 176);
CHECK_FIELD(PF_InData, utils, 176, 8);
CHECK_FIELD(PF_InData, effect_ref, 184, 8);
CHECK_FIELD(PF_InData, quality, 192, 4);
CHECK_FIELD(PF_InData, version, 196, 4);
CHECK_FIELD(PF_InData, serial_num, 200, 4);
CHECK_FIELD(PF_InData, appl_id, 204, 4);
CHECK_FIELD(PF_InData, num_params, 208, 4);
CHECK_FIELD(PF_InData, reserved, 212, 4);
CHECK_FIELD(PF_InData, what_cpu, 216, 4);
CHECK_FIELD(PF_InData, what_fpu, 220, 4);
CHECK_FIELD(PF_InData, current_time, 224, 4);
CHECK_FIELD(PF_InData, time_step, 228, 4);
CHECK_FIELD(PF_InData, total_time, 232, 4);
CHECK_FIELD(PF_InData, local_time_step, 236, 4);
CHECK_FIELD(PF_InData, time_scale, 240, 4);
CHECK_FIELD(PF_InData, field, 244, 4);
CHECK_FIELD(PF_InData, shutter_angle, 248, 4);
CHECK_FIELD(PF_InData, width, 252, 4);
CHECK_FIELD(PF_InData, height, 256, 4);
CHECK_FIELD(PF_InData, extent_hint, 260, 16);
CHECK_FIELD(PF_InData, output_origin_x, 276, 4);
CHECK_FIELD(PF_InData, output_origin_y, 280, 4);
CHECK_FIELD(PF_InData, downsample_x, 284, 8);
CHECK_FIELD(PF_InData, downsample_y, 292, 8);
CHECK_FIELD(PF_InData, pixel_aspect_ratio, 300, 8);
CHECK_FIELD(PF_InData, in_flags, 308, 4);
CHECK_FIELD(PF_InData, global_data, 312, 8);
CHECK_FIELD(PF_InData, sequence_data, 320, 8);
CHECK_FIELD(PF_InData, frame_data, 328, 8);
CHECK_FIELD(PF_InData, start_sampL, 336, 4);
CHECK_FIELD(PF_InData, dur_sampL, 340, 4);
CHECK_FIELD(PF_InData, total_sampL, 344, 4);
CHECK_FIELD(PF_InData, src_snd, 352, 32);
CHECK_FIELD(PF_InData, pica_basicP, 384, 8);
CHECK_FIELD(PF_InData, pre_effect_source_origin_x, 392, 4);
CHECK_FIELD(PF_InData, pre_effect_source_origin_y, 396, 4);
CHECK_FIELD(PF_InData, shutter_phase, 400, 4);

CHECK_SIZE(PF_OutData, 408);
CHECK_FIELD(PF_OutData, my_version, 0, 4);
CHECK_FIELD(PF_OutData, name, 4, 32);
CHECK_FIELD(PF_OutData, global_data, 40, 8);
CHECK_FIELD(PF_OutData, num_params, 48, 4);
CHECK_FIELD(PF_OutData, sequence_data, 56, 8);
CHECK_FIELD(PF_OutData, flat_sdata_size, 64, 4);
CHECK_FIELD(PF_OutData, frame_data, 72, 8);
CHECK_FIELD(PF_OutData, width, 80, 4);
CHECK_FIELD(PF_OutData, height, 84, 4);
CHECK_FIELD(PF_OutData, origin, 88, 8);
CHECK_FIELD(PF_OutData, out_flags, 96, 4);
CHECK_FIELD(PF_OutData, return_msg, 100, 256);
CHECK_FIELD(PF_OutData, start_sampL, 356, 4);
CHECK_FIELD(PF_OutData, dur_sampL, 360, 4);
CHECK_FIELD(PF_OutData, dest_snd, 368, 32);
CHECK_FIELD(PF_OutData, out_flags2, 400, 4);

#endif
