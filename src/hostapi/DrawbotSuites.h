#pragma once

#include "hostapi/BasicSuite.h"
#include "hostapi/DrawbotTypes.h"

// Drawing into a panel of the host.

inline constexpr char kDRAWBOT_DrawSuite[] = "DRAWBOT Draw Suite";
inline constexpr A_long kDRAWBOT_DrawSuite_Version1 = 1;

// What belongs to a drawing reference.
struct DRAWBOT_DrawbotSuite1 {
    SPErr (*GetSupplier)(DRAWBOT_DrawRef draw, DRAWBOT_SupplierRef* out);
    SPErr (*GetSurface)(DRAWBOT_DrawRef draw, DRAWBOT_SurfaceRef* out);
};

inline constexpr char kDRAWBOT_SupplierSuite[] = "DRAWBOT Supplier Suite";
inline constexpr A_long kDRAWBOT_SupplierSuite_Version1 = 1;

// Makes what is drawn with; each object is released by ReleaseObject.
struct DRAWBOT_SupplierSuite1 {
    SPErr (*NewPen)(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, float size, DRAWBOT_PenRef* out);
    SPErr (*NewBrush)(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, DRAWBOT_BrushRef* out);
    void* SupportsText;
    void* GetDefaultFontSize;
    void* NewDefaultFont;
    SPErr (*NewImageFromBuffer)(DRAWBOT_SupplierRef supplier, int width, int height, int row_bytes,
                                DRAWBOT_PixelLayout layout, const void* data, DRAWBOT_ImageRef* out);
    SPErr (*NewPath)(DRAWBOT_SupplierRef supplier, DRAWBOT_PathRef* out);
    void* SupportsPixelLayoutBGRA;
    void* PrefersPixelLayoutBGRA;
    void* SupportsPixelLayoutARGB;
    void* PrefersPixelLayoutARGB;
    void* RetainObject;
    SPErr (*ReleaseObject)(DRAWBOT_ObjectRef object);
};

inline constexpr char kDRAWBOT_SurfaceSuite[] = "DRAWBOT Surface Suite";
inline constexpr A_long kDRAWBOT_SurfaceSuite_Version2 = 2;

// The order from `Clip` on is not certain, and with it the place of `DrawImage`.
struct DRAWBOT_SurfaceSuite2 {
    void* PushStateStack;
    void* PopStateStack;
    SPErr (*PaintRect)(DRAWBOT_SurfaceRef surface, const DRAWBOT_ColorRGBA* color, const DRAWBOT_RectF32* rect);
    SPErr (*FillPath)(DRAWBOT_SurfaceRef surface, DRAWBOT_BrushRef brush, DRAWBOT_PathRef path, DRAWBOT_FillType fill);
    SPErr (*StrokePath)(DRAWBOT_SurfaceRef surface, DRAWBOT_PenRef pen, DRAWBOT_PathRef path);
    void* Clip;
    void* GetClipBounds;
    void* IsWithinClipBounds;
    void* Transform;
    void* DrawString;
    SPErr (*DrawImage)(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef image, const DRAWBOT_PointF32* origin, float alpha);
};

inline constexpr char kDRAWBOT_PathSuite[] = "DRAWBOT Path Suite";
inline constexpr A_long kDRAWBOT_PathSuite_Version1 = 1;

// Adds to a path, in pixels of the surface.
struct DRAWBOT_PathSuite1 {
    SPErr (*MoveTo)(DRAWBOT_PathRef path, float x, float y);
    SPErr (*LineTo)(DRAWBOT_PathRef path, float x, float y);
    void* BezierTo;
    void* AddRect;
    // Angles in degrees.
    SPErr (*AddArc)(DRAWBOT_PathRef path, const DRAWBOT_PointF32* center, float radius, float start_angle, float sweep);
    void* Close;
};
