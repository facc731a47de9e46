#include "hostapi/LayoutCheck.h"

// The suites' tables, each up to its last used entry: Drawbot.

#ifndef QUILLON_VENDOR_HEADERS

CHECK_SIZE(DRAWBOT_DrawbotSuite1, 16);
CHECK_ENTRY(DRAWBOT_DrawbotSuite1, GetSupplier, 0);
CHECK_ENTRY(DRAWBOT_DrawbotSuite1, GetSurface, 1);

CHECK_SIZE(DRAWBOT_SupplierSuite1, 104);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, NewPen, 0);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, NewBrush, 1);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, SupportsText, 2);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, GetDefaultFontSize, 3);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, NewDefaultFont, 4);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, NewImageFromBuffer, 5);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, NewPath, 6);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, SupportsPixelLayoutBGRA, 7);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, PrefersPixelLayoutBGRA, 8);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, SupportsPixelLayoutARGB, 9);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, PrefersPixelLayoutARGB, 10);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, RetainObject, 11);
CHECK_ENTRY(DRAWBOT_SupplierSuite1, ReleaseObject, 12);

CHECK_SIZE(DRAWBOT_SurfaceSuite2, 88);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, PushStateStack, 0);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, PopStateStack, 1);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, PaintRect, 2);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, FillPath, 3);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, StrokePath, 4);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, Clip, 5);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, GetClipBounds, 6);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, IsWithinClipBounds, 7);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, Transform, 8);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, DrawString, 9);
CHECK_ENTRY(DRAWBOT_SurfaceSuite2, DrawImage, 10);

CHECK_SIZE(DRAWBOT_PathSuite1, 48);
CHECK_ENTRY(DRAWBOT_PathSuite1, MoveTo, 0);
CHECK_ENTRY(DRAWBOT_PathSuite1, LineTo, 1);
CHECK_ENTRY(DRAWBOT_PathSuite1, BezierTo, 2);
CHECK_ENTRY(DRAWBOT_PathSuite1, AddRect, 3);
CHECK_ENTRY(DRAWBOT_PathSuite1, AddArc, 4);
CHECK_ENTRY(DRAWBOT_PathSuite1, Close, 5);

#endif
