#pragma once

#include "hostapi/BaseTypes.h"

// References to the host's own objects; an effect only passes them on.

struct AEGP_LayerOpaque;
struct AEGP_CompOpaque;
struct AEGP_ItemOpaque;
struct AEGP_EffectRefOpaque;
struct AEGP_LayerRenderOptionsOpaque;
struct AEGP_FrameReceiptOpaque;
struct AEGP_WorldOpaque;
struct AEGP_GlobalRefconOpaque;
struct AEGP_CancelRefconOpaque;

typedef AEGP_LayerOpaque* AEGP_LayerH;
typedef AEGP_CompOpaque* AEGP_CompH;
typedef AEGP_ItemOpaque* AEGP_ItemH;
typedef AEGP_EffectRefOpaque* AEGP_EffectRefH;
typedef AEGP_LayerRenderOptionsOpaque* AEGP_LayerRenderOptionsH;
typedef AEGP_FrameReceiptOpaque* AEGP_FrameReceiptH;
typedef AEGP_WorldOpaque* AEGP_WorldH;
typedef AEGP_GlobalRefconOpaque* AEGP_GlobalRefcon;
typedef AEGP_CancelRefconOpaque* AEGP_CancelRefcon;

typedef A_long AEGP_PluginID;
