#include "hostapi/LayoutCheck.h"

// The suites' tables, each up to its last used entry: effects' and Premiere Pro's.

#ifndef QUILLON_VENDOR_HEADERS

CHECK_SIZE(PF_HandleSuite1, 32);
CHECK_ENTRY(PF_HandleSuite1, host_new_handle, 0);
CHECK_ENTRY(PF_HandleSuite1, host_lock_handle, 1);
CHECK_ENTRY(PF_HandleSuite1, host_unlock_handle, 2);
CHECK_ENTRY(PF_HandleSuite1, host_dispose_handle, 3);

CHECK_SIZE(PF_ParamUtilsSuite3, 8);
CHECK_ENTRY(PF_ParamUtilsSuite3, PF_UpdateParamUI, 0);

CHECK_SIZE(PF_EffectUISuite1, 8);
CHECK_ENTRY(PF_EffectUISuite1, PF_SetOptionsButtonName, 0);

CHECK_SIZE(PF_ColorParamSuite1, 8);
CHECK_ENTRY(PF_ColorParamSuite1, PF_GetFloatingPointColorFromColorDef, 0);

CHECK_SIZE(PF_PixelDataSuite1, 24);
CHECK_ENTRY(PF_PixelDataSuite1, get_pixel_data8, 0);
CHECK_ENTRY(PF_PixelDataSuite1, get_pixel_data16, 1);
CHECK_ENTRY(PF_PixelDataSuite1, get_pixel_data_float, 2);

CHECK_SIZE(PF_WorldSuite2, 24);
CHECK_ENTRY(PF_WorldSuite2, PF_NewWorld, 0);
CHECK_ENTRY(PF_WorldSuite2, PF_DisposeWorld, 1);
CHECK_ENTRY(PF_WorldSuite2, PF_GetPixelFormat, 2);

CHECK_SIZE(PF_EffectCustomUISuite1, 8);
CHECK_ENTRY(PF_EffectCustomUISuite1, PF_GetDrawingReference, 0);

CHECK_SIZE(PF_HelperSuite2, 24);
CHECK_ENTRY(PF_HelperSuite2, PF_ParseClipboard, 0);
CHECK_ENTRY(PF_HelperSuite2, PF_SetCurrentExtendedTool, 1);
CHECK_ENTRY(PF_HelperSuite2, PF_GetCurrentExtendedTool, 2);

CHECK_SIZE(PF_PixelFormatSuite1, 40);
CHECK_ENTRY(PF_PixelFormatSuite1, AddSupportedPixelFormat, 0);
CHECK_ENTRY(PF_PixelFormatSuite1, ClearSupportedPixelFormats, 1);
CHECK_ENTRY(PF_PixelFormatSuite1, NewWorldOfPixelFormat, 2);
CHECK_ENTRY(PF_PixelFormatSuite1, DisposeWorld, 3);
CHECK_ENTRY(PF_PixelFormatSuite1, GetPixelFormat, 4);

CHECK_SIZE(PF_UtilitySuite, 88);
CHECK_ENTRY(PF_UtilitySuite, GetFilterInstanceID, 0);
CHECK_ENTRY(PF_UtilitySuite, GetMediaTimecode, 1);
CHECK_ENTRY(PF_UtilitySuite, GetClipSpeed, 2);
CHECK_ENTRY(PF_UtilitySuite, GetClipDuration, 3);
CHECK_ENTRY(PF_UtilitySuite, GetClipStart, 4);
CHECK_ENTRY(PF_UtilitySuite, GetUnscaledClipDuration, 5);
CHECK_ENTRY(PF_UtilitySuite, GetUnscaledClipStart, 6);
CHECK_ENTRY(PF_UtilitySuite, GetTrackItemStart, 7);
CHECK_ENTRY(PF_UtilitySuite, GetMediaFieldType, 8);
CHECK_ENTRY(PF_UtilitySuite, GetMediaFrameRate, 9);
CHECK_ENTRY(PF_UtilitySuite, GetContainingTimelineID, 10);

CHECK_SIZE(PrSDKSequenceInfoSuite, 16);
CHECK_ENTRY(PrSDKSequenceInfoSuite, GetFrameRect, 0);
CHECK_ENTRY(PrSDKSequenceInfoSuite, GetPixelAspectRatio, 1);

#endif
