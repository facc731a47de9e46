#pragma once

#include "hostapi/AegpTypes.h"
#include "hostapi/World.h"

// Frames of the layer below an effect, at any time.

inline constexpr char kAEGPLayerRenderOptionsSuite[] = "AEGP Layer Render Options Suite";
inline constexpr A_long kAEGPLayerRenderOptionsSuiteVersion1 = 1;

// A later version has AEGP_NewFromDownstreamOfEffect before the third entry; this one is read without it.
struct AEGP_LayerRenderOptionsSuite1 {
    void* AEGP_NewFromLayer;
    A_Err (*AEGP_NewFromUpstreamOfEffect)(AEGP_PluginID plugin, AEGP_EffectRefH effect, AEGP_LayerRenderOptionsH* out);
    void* AEGP_Duplicate;
    A_Err (*AEGP_Dispose)(AEGP_LayerRenderOptionsH options);
    A_Err (*AEGP_SetTime)(AEGP_LayerRenderOptionsH options, A_Time time);
};

// Asked while a frame renders; `refcon` is whatever was given along.
typedef A_Err (*AEGP_RenderSuiteCheckForCancel)(void* refcon, A_Boolean* cancel);

inline constexpr char kAEGPRenderSuite[] = "AEGP Render Suite";
inline constexpr A_long kAEGPRenderSuiteVersion4 = 5;

// Without the two asynchronous entries the last two would be at 2 and 3. A form of the layer frame without
// `render_plain` is known too; which of the two belongs to this version is not confirmed.
struct AEGP_RenderSuite4 {
    void* AEGP_RenderAndCheckoutFrame;
    A_Err (*AEGP_RenderAndCheckoutLayerFrame)(AEGP_LayerRenderOptionsH options, A_Boolean render_plain,
                                              AEGP_RenderSuiteCheckForCancel cancel, AEGP_CancelRefcon refcon,
                                              AEGP_FrameReceiptH* out);
    void* AEGP_RenderAndCheckoutLayerFrame_Async;
    void* AEGP_CancelAsyncRequest;
    A_Err (*AEGP_CheckinFrame)(AEGP_FrameReceiptH receipt);
    A_Err (*AEGP_GetReceiptWorld)(AEGP_FrameReceiptH receipt, AEGP_WorldH* out);
};

inline constexpr char kAEGPWorldSuite[] = "AEGP World Suite";
inline constexpr A_long kAEGPWorldSuiteVersion3 = 3;

// From a rendered frame's world to the record that effects know.
struct AEGP_WorldSuite3 {
    void* AEGP_New;
    void* AEGP_Dispose;
    void* AEGP_GetType;
    void* AEGP_GetSize;
    void* AEGP_GetRowBytes;
    void* AEGP_GetBaseAddr8;
    void* AEGP_GetBaseAddr16;
    void* AEGP_GetBaseAddr32;
    A_Err (*AEGP_FillOutPFEffectWorld)(AEGP_WorldH world, PF_EffectWorld* out);
};
