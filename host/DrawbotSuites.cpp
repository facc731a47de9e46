// Drawing into a panel: nothing appears anywhere, all is recorded.

#include "host/HostSession.h"
#include "host/HostTables.h"
#include "host/ObjectReferences.h"

namespace quillon::host {

namespace {

char drawPlace, supplierPlace, surfacePlace;

template <class Reference>
bool IsPlace(Reference reference, const char& place) {
    return reinterpret_cast<const char*>(reference) == &place;
}

template <class Reference>
SPErr GivePlace(const CallbackScope& scope, bool isKnown, char& place, Reference* out) {
    if (!scope) return scope.error();
    if (!isKnown || !out) return scope.refuse("a drawing reference is invalid");
    *out = reinterpret_cast<Reference>(&place);
    return PF_Err_NONE;
}

PF_Err DrawingReference(const PF_ContextH context, DRAWBOT_DrawRef* out) {
    return GivePlace(CallbackScope(Callback::drawingReference), context != nullptr, drawPlace, out);
}

SPErr DrawSupplier(DRAWBOT_DrawRef draw, DRAWBOT_SupplierRef* out) {
    return GivePlace(CallbackScope(Callback::drawSupplier), IsPlace(draw, drawPlace), supplierPlace, out);
}

SPErr DrawSurface(DRAWBOT_DrawRef draw, DRAWBOT_SurfaceRef* out) {
    return GivePlace(CallbackScope(Callback::drawSurface), IsPlace(draw, drawPlace), surfacePlace, out);
}

template <class Reference>
SPErr Make(const CallbackScope& scope, DRAWBOT_SupplierRef supplier, const char* kind, const Drawing& drawing,
           Reference* out) {
    if (!scope) return scope.error();
    if (!IsPlace(supplier, supplierPlace) || !out) return scope.refuse("an unknown supplier is asked");
    *out = MakeReference<Reference>(*scope, {.kind = kind, .drawing = drawing});
    return PF_Err_NONE;
}

SPErr NewPen(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, float size, DRAWBOT_PenRef* out) {
    return Make(CallbackScope(Callback::newPen), supplier, kObjectPen,
                {.color = color ? *color : DRAWBOT_ColorRGBA{}, .penSize = size}, out);
}

SPErr NewBrush(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, DRAWBOT_BrushRef* out) {
    return Make(CallbackScope(Callback::newBrush), supplier, kObjectBrush,
                {.color = color ? *color : DRAWBOT_ColorRGBA{}}, out);
}

SPErr NewImage(DRAWBOT_SupplierRef supplier, int width, int height, int rowBytes, DRAWBOT_PixelLayout layout,
               const void* data, DRAWBOT_ImageRef* out) {
    const CallbackScope scope(Callback::newImage);
    if (scope && (!data || width < 0 || height < 0 || rowBytes < 0)) return scope.refuse("an image without pixels");
    Drawing drawing{.image = {width, height, rowBytes, layout, {}}};
    if (scope) {
        const auto* const bytes = static_cast<const std::byte*>(data);
        drawing.image.bytes.assign(bytes, bytes + static_cast<std::ptrdiff_t>(rowBytes) * height);
    }
    return Make(scope, supplier, kObjectImage, drawing, out);
}

SPErr NewPath(DRAWBOT_SupplierRef supplier, DRAWBOT_PathRef* out) {
    return Make(CallbackScope(Callback::newPath), supplier, kObjectPath, {}, out);
}

SPErr ReleaseObject(DRAWBOT_ObjectRef reference) {
    const CallbackScope scope(Callback::releaseObject);
    if (!scope.isInCall()) return scope.error();
    if (!scope->ledger.objectGivenBack(reference)) return scope.refuse("what is no object is released");
    return scope.error();
}

// Adds one drawing with what the objects hold. Null objects are left out.
SPErr Draw(const CallbackScope& scope, DRAWBOT_SurfaceRef surface, Drawing drawing, const HostObject* tool,
           const HostObject* path) {
    if (!IsPlace(surface, surfacePlace)) return scope.refuse("an unknown surface is drawn on");
    if (tool) {
        drawing.color = tool->drawing.color;
        drawing.penSize = tool->drawing.penSize;
        drawing.image = tool->drawing.image;
    }
    if (path) {
        drawing.path = path->drawing.path;
        drawing.arcs = path->drawing.arcs;
    }
    scope->session.record([&](Records& records) { records.drawings.push_back(std::move(drawing)); });
    return PF_Err_NONE;
}

SPErr PaintRect(DRAWBOT_SurfaceRef surface, const DRAWBOT_ColorRGBA* color, const DRAWBOT_RectF32* rect) {
    const CallbackScope scope(Callback::paintRect);
    if (!scope) return scope.error();
    if (!color || !rect) return scope.refuse("a rectangle without color or place");
    return Draw(scope, surface, {.call = Callback::paintRect, .color = *color, .rect = *rect}, nullptr, nullptr);
}

SPErr DrawPath(Callback which, DRAWBOT_SurfaceRef surface, const void* tool, const char* kind, DRAWBOT_PathRef path) {
    const CallbackScope scope(which);
    if (!scope) return scope.error();
    const HostObject* const toolObject = ObjectOf(scope, tool, kind);
    const HostObject* const pathObject = ObjectOf(scope, path, kObjectPath);
    if (!toolObject || !pathObject) return PF_Err_BAD_CALLBACK_PARAM;
    return Draw(scope, surface, {.call = which}, toolObject, pathObject);
}

SPErr FillPath(DRAWBOT_SurfaceRef surface, DRAWBOT_BrushRef brush, DRAWBOT_PathRef path, DRAWBOT_FillType) {
    return DrawPath(Callback::fillPath, surface, brush, kObjectBrush, path);
}

SPErr StrokePath(DRAWBOT_SurfaceRef surface, DRAWBOT_PenRef pen, DRAWBOT_PathRef path) {
    return DrawPath(Callback::strokePath, surface, pen, kObjectPen, path);
}

SPErr DrawImage(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef image, const DRAWBOT_PointF32* origin, float alpha) {
    const CallbackScope scope(Callback::drawImage);
    if (!scope) return scope.error();
    const HostObject* const object = ObjectOf(scope, image, kObjectImage);
    if (!object || !origin) return PF_Err_BAD_CALLBACK_PARAM;
    return Draw(scope, surface, {.call = Callback::drawImage, .imageOrigin = *origin, .imageAlpha = alpha}, object,
                nullptr);
}

SPErr AddPoint(Callback which, DRAWBOT_PathRef path, float x, float y) {
    const CallbackScope scope(which);
    if (!scope) return scope.error();
    HostObject* const object = ObjectOf(scope, path, kObjectPath);
    if (!object) return PF_Err_BAD_CALLBACK_PARAM;
    object->drawing.path.push_back({x, y});
    return PF_Err_NONE;
}

SPErr MoveTo(DRAWBOT_PathRef path, float x, float y) {
    return AddPoint(Callback::moveTo, path, x, y);
}
SPErr LineTo(DRAWBOT_PathRef path, float x, float y) {
    return AddPoint(Callback::lineTo, path, x, y);
}

SPErr AddArc(DRAWBOT_PathRef path, const DRAWBOT_PointF32* center, float radius, float startAngle, float sweep) {
    const CallbackScope scope(Callback::addArc);
    if (!scope) return scope.error();
    HostObject* const object = ObjectOf(scope, path, kObjectPath);
    if (!object || !center) return PF_Err_BAD_CALLBACK_PARAM;
    object->drawing.arcs.push_back({*center, radius, startAngle, sweep});
    return PF_Err_NONE;
}

}  // namespace

std::span<const SuiteOffer> DrawbotSuites() {
    static const PF_EffectCustomUISuite1 kCustomUi{DrawingReference};
    static const DRAWBOT_DrawbotSuite1 kDrawTable{DrawSupplier, DrawSurface};
    static const auto kSupplier = MakeTable<DRAWBOT_SupplierSuite1>([](auto& table) {
        table.NewPen = NewPen;
        table.NewBrush = NewBrush;
        table.NewImageFromBuffer = NewImage;
        table.NewPath = NewPath;
        table.ReleaseObject = ReleaseObject;
    });
    static const auto kSurface = MakeTable<DRAWBOT_SurfaceSuite2>([](auto& table) {
        table.PaintRect = PaintRect;
        table.FillPath = FillPath;
        table.StrokePath = StrokePath;
        table.DrawImage = DrawImage;
    });
    static const auto kPath = MakeTable<DRAWBOT_PathSuite1>([](auto& table) {
        table.MoveTo = MoveTo;
        table.LineTo = LineTo;
        table.AddArc = AddArc;
    });
    static const SuiteOffer kOffers[] = {
        OfferOf(suites::kEffectCustomUI, true, true, kCustomUi),
        OfferOf(suites::kDrawbotDraw, true, true, kDrawTable),
        OfferOf(suites::kDrawbotSupplier, true, true, kSupplier),
        OfferOf(suites::kDrawbotSurface, true, true, kSurface),
        OfferOf(suites::kDrawbotPath, true, true, kPath),
    };
    return kOffers;
}

}  // namespace quillon::host
