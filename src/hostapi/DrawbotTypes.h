#pragma once

#include "hostapi/BaseTypes.h"

// What the host's drawing library draws with. Every reference is one opaque pointer; retain and release take a
// DRAWBOT_ObjectRef, to which the others are cast.

struct DRAWBOT_DrawOpaque;
struct DRAWBOT_SupplierOpaque;
struct DRAWBOT_SurfaceOpaque;
struct DRAWBOT_ObjectOpaque;
struct DRAWBOT_PenOpaque;
struct DRAWBOT_BrushOpaque;
struct DRAWBOT_PathOpaque;
struct DRAWBOT_ImageOpaque;

typedef DRAWBOT_DrawOpaque* DRAWBOT_DrawRef;
typedef DRAWBOT_SupplierOpaque* DRAWBOT_SupplierRef;
typedef DRAWBOT_SurfaceOpaque* DRAWBOT_SurfaceRef;
typedef DRAWBOT_ObjectOpaque* DRAWBOT_ObjectRef;
typedef DRAWBOT_PenOpaque* DRAWBOT_PenRef;
typedef DRAWBOT_BrushOpaque* DRAWBOT_BrushRef;
typedef DRAWBOT_PathOpaque* DRAWBOT_PathRef;
typedef DRAWBOT_ImageOpaque* DRAWBOT_ImageRef;

// Each from 0 to 1, straight.
struct DRAWBOT_ColorRGBA {
    float red;
    float green;
    float blue;
    float alpha;
};

// In pixels of the surface, like rectangles.
struct DRAWBOT_PointF32 {
    float x;
    float y;
};

struct DRAWBOT_RectF32 {
    float left;
    float top;
    float width;
    float height;
};

// Neither list of numbers is certain.
enum DRAWBOT_PixelLayout : A_long {
    kDRAWBOT_PixelLayout_24RGB = 0,
    kDRAWBOT_PixelLayout_24BGR = 1,
    kDRAWBOT_PixelLayout_32RGB = 2,
    kDRAWBOT_PixelLayout_32BGR = 3,
    kDRAWBOT_PixelLayout_32ARGB_Straight = 4,
    kDRAWBOT_PixelLayout_32ARGB_Premul = 5,
    kDRAWBOT_PixelLayout_32BGRA_Straight = 6,
    kDRAWBOT_PixelLayout_32BGRA_Premul = 7
};

// What counts as inside of a path that crosses itself.
enum DRAWBOT_FillType : A_long { kDRAWBOT_FillType_EvenOdd = 0, kDRAWBOT_FillType_Winding = 1 };
