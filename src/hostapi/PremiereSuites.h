#pragma once

#include "hostapi/PixelFormats.h"
#include "hostapi/World.h"

// The suites that only Premiere Pro has.

typedef std::int32_t csSDK_int32;
typedef std::uint32_t csSDK_uint32;
typedef csSDK_int32 prSuiteError;
typedef csSDK_int32 PrTimelineID;

// As on Windows; elsewhere the vendor may count in 16 bits.
struct prRect {
    csSDK_int32 left;
    csSDK_int32 top;
    csSDK_int32 right;
    csSDK_int32 bottom;
};

inline constexpr char kPFPixelFormatSuite[] = "PF Pixel Format Suite";
inline constexpr A_long kPFPixelFormatSuiteVersion1 = 1;

// The formats in which an effect takes worlds, and the format of one.
struct PF_PixelFormatSuite1 {
    PF_Err (*AddSupportedPixelFormat)(PF_ProgPtr effect_ref, PrPixelFormat format);
    PF_Err (*ClearSupportedPixelFormats)(PF_ProgPtr effect_ref);
    void* NewWorldOfPixelFormat;
    void* DisposeWorld;
    PF_Err (*GetPixelFormat)(PF_EffectWorld* world, PrPixelFormat* out);
};

inline constexpr char kPFUtilitySuite[] = "PF Utility Suite";
inline constexpr A_long kPFUtilitySuiteVersion3 = 3;

// Version 3 is read as the start of version 4.
struct PF_UtilitySuite {
    void* GetFilterInstanceID;
    void* GetMediaTimecode;
    void* GetClipSpeed;
    void* GetClipDuration;
    void* GetClipStart;
    void* GetUnscaledClipDuration;
    void* GetUnscaledClipStart;
    void* GetTrackItemStart;
    void* GetMediaFieldType;
    void* GetMediaFrameRate;
    PF_Err (*GetContainingTimelineID)(PF_ProgPtr effect_ref, PrTimelineID* out);
};

inline constexpr char kPrSDKSequenceInfoSuite[] = "MediaCore Sequence Info Suite";
inline constexpr A_long kPrSDKSequenceInfoSuiteVersion2 = 2;

// Version 2 is read as the start of the newest one.
struct PrSDKSequenceInfoSuite {
    prSuiteError (*GetFrameRect)(PrTimelineID timeline, prRect* out);
    prSuiteError (*GetPixelAspectRatio)(PrTimelineID timeline, csSDK_uint32* num, csSDK_uint32* den);
};
