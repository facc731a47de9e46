// Drawing into a panel: nothing appears anywhere, all is recorded.


#include "host/HostSession.h"
#include "host/HostTables.h"
#include "host/ObjectReferences.h"

namespace quillon::host {

namespace {

char drawPlace, supplierPlace, surfacePlace;

template <class Reference>
bool isPlace(Reference reference, const char& place) {
    return reinterpret_cast<const char*>(reference) == &place;
}

template <class Reference>
SPErr givePlace(const CallbackScope& visit, bool isKnown, char& place, Reference* out) {
    if (!visit) return visit.error();
    if (!isKnown || !out) return visit.refuse("a drawing reference is none");
    *out = reinterpret_cast<Reference>(&place);
    return PF_Err_NONE;
}

PF_Err drawingReference(const PF_ContextH context, DRAWBOT_DrawRef* out) {
    return givePlace(CallbackScope(Callback::drawingReference), context != nullptr, drawPlace, out);
}

SPErr drawSupplier(DRAWBOT_DrawRef draw, DRAWBOT_SupplierRef* out) {
    return givePlace(CallbackScope(Callback::drawSupplier), isPlace(draw, drawPlace), supplierPlace, out);
}

SPErr drawSurface(DRAWBOT_DrawRef draw, DRAWBOT_SurfaceRef* out) {
    return givePlace(CallbackScope(Callback::drawSurface), isPlace(draw, drawPlace), surfacePlace, out);
}

template <class Reference>
SPErr make(const CallbackScope& visit, DRAWBOT_SupplierRef supplier, const char* kind, Drawing drawing, Reference* out) {
    if (!visit) return visit.error();
    if (!isPlace(supplier, supplierPlace) || !out) return visit.refuse("an unknown supplier is asked");
    *out = makeReference<Reference>(*visit, {.kind = kind, .drawing = std::move(drawing)});
    return PF_Err_NONE;
}

SPErr newPen(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, float size, DRAWBOT_PenRef* out) {
    return make(CallbackScope(Callback::newPen), supplier, kObjectPen,
                {.color = color ? *color : DRAWBOT_ColorRGBA{}, .penSize = size}, out);
}

SPErr newBrush(DRAWBOT_SupplierRef supplier, const DRAWBOT_ColorRGBA* color, DRAWBOT_BrushRef* out) {
    return make(CallbackScope(Callback::newBrush), supplier, kObjectBrush, {.color = color ? *color : DRAWBOT_ColorRGBA{}},
                out);
}

SPErr newImage(DRAWBOT_SupplierRef supplier, int width, int height, int rowBytes, DRAWBOT_PixelLayout layout,
               const void* data, DRAWBOT_ImageRef* out) {
    const CallbackScope visit(Callback::newImage);
    if (visit && (!data || width < 0 || height < 0 || rowBytes < 0)) return visit.refuse("an image without pixels");
    Drawing drawing{.image = {width, height, rowBytes, layout, {}}};
    if (visit) {
        const auto* const bytes = static_cast<const std::byte*>(data);
        drawing.image.bytes.assign(bytes, bytes + static_cast<std::ptrdiff_t>(rowBytes) * height);
    }
    return make(visit, supplier, kObjectImage, std::move(drawing), out);
}

SPErr newPath(DRAWBOT_SupplierRef supplier, DRAWBOT_PathRef* out) {
    return make(CallbackScope(Callback::newPath), supplier, kObjectPath, {}, out);
}

SPErr releaseObject(DRAWBOT_ObjectRef reference) {
    const CallbackScope visit(Callback::releaseObject);
    if (!visit.isInCall()) return visit.error();
    if (!visit->books.objectGivenBack(reference)) return visit.refuse("what is no object is released");
    return visit.error();
}

// Adds one drawing with what the objects hold. Null objects are left out.
SPErr draw(const CallbackScope& visit, DRAWBOT_SurfaceRef surface, Drawing drawing, const HostObject* tool,
           const HostObject* path) {
    if (!isPlace(surface, surfacePlace)) return visit.refuse("an unknown surface is drawn on");
    if (tool) {
        drawing.color = tool->drawing.color;
        drawing.penSize = tool->drawing.penSize;
        drawing.image = tool->drawing.image;
    }
    if (path) {
        drawing.path = path->drawing.path;
        drawing.arcs = path->drawing.arcs;
    }
    visit->session.record([&](Records& records) { records.drawings.push_back(std::move(drawing)); });
    return PF_Err_NONE;
}

SPErr paintRect(DRAWBOT_SurfaceRef surface, const DRAWBOT_ColorRGBA* color, const DRAWBOT_RectF32* rect) {
    const CallbackScope visit(Callback::paintRect);
    if (!visit) return visit.error();
    if (!color || !rect) return visit.refuse("a rectangle without color or place");
    return draw(visit, surface, {.call = Callback::paintRect, .color = *color, .rect = *rect}, nullptr, nullptr);
}

SPErr drawPath(Callback which, DRAWBOT_SurfaceRef surface, const void* tool, const char* kind, DRAWBOT_PathRef path) {
    const CallbackScope visit(which);
    if (!visit) return visit.error();
    const HostObject* const toolObject = objectOf(visit, tool, kind);
    const HostObject* const pathObject = objectOf(visit, path, kObjectPath);
    if (!toolObject || !pathObject) return PF_Err_BAD_CALLBACK_PARAM;
    return draw(visit, surface, {.call = which}, toolObject, pathObject);
}

SPErr fillPath(DRAWBOT_SurfaceRef surface, DRAWBOT_BrushRef brush, DRAWBOT_PathRef path, DRAWBOT_FillType) {
    return drawPath(Callback::fillPath, surface, brush, kObjectBrush, path);
}

SPErr strokePath(DRAWBOT_SurfaceRef surface, DRAWBOT_PenRef pen, DRAWBOT_PathRef path) {
    return drawPath(Callback::strokePath, surface, pen, kObjectPen, path);
}

SPErr drawImage(DRAWBOT_SurfaceRef surface, DRAWBOT_ImageRef image, const DRAWBOT_PointF32* origin, float alpha) {
    const CallbackScope visit(Callback::drawImage);
    if (!visit) return visit.error();
    const HostObject* const object = objectOf(visit, image, kObjectImage);
    if (!object || !origin) return PF_Err_BAD_CALLBACK_PARAM;
    return draw(visit, surface, {.call = Callback::drawImage, .imageOrigin = *origin, .imageAlpha = alpha}, object,
                nullptr);
}

SPErr addPoint(Callback which, DRAWBOT_PathRef path, float x, float y) {
    const CallbackScope visit(which);
    if (!visit) return visit.error();
    HostObject* const object = objectOf(visit, path, kObjectPath);
    if (!object) return PF_Err_BAD_CALLBACK_PARAM;
    object->drawing.path.push_back({x, y});
    return PF_Err_NONE;
}

SPErr moveTo(DRAWBOT_PathRef path, float x, float y) {
    return addPoint(Callback::moveTo, path, x, y);
}
SPErr lineTo(DRAWBOT_PathRef path, float x, float y) {
    return addPoint(Callback::lineTo, path, x, y);
}

SPErr addArc(DRAWBOT_PathRef path, const DRAWBOT_PointF32* center, float radius, float startAngle, float sweep) {
    const CallbackScope visit(Callback::addArc);
    if (!visit) return visit.error();
    HostObject* const object = objectOf(visit, path, kObjectPath);
    if (!object || !center) return PF_Err_BAD_CALLBACK_PARAM;
    object->drawing.arcs.push_back({*center, radius, startAngle, sweep});
    return PF_Err_NONE;
}

}  // namespace

std::span<const SuiteOffer> drawbotSuites() {
    static const PF_EffectCustomUISuite1 customUI{drawingReference};
    static const DRAWBOT_DrawbotSuite1 drawTable{drawSupplier, drawSurface};
    static const auto supplier = makeTable<DRAWBOT_SupplierSuite1>([](auto& table) {
        table.NewPen = newPen;
        table.NewBrush = newBrush;
        table.NewImageFromBuffer = newImage;
        table.NewPath = newPath;
        table.ReleaseObject = releaseObject;
    });
    static const auto surface = makeTable<DRAWBOT_SurfaceSuite2>([](auto& table) {
        table.PaintRect = paintRect;
        table.FillPath = fillPath;
        table.StrokePath = strokePath;
        table.DrawImage = drawImage;
    });
    static const auto path = makeTable<DRAWBOT_PathSuite1>([](auto& table) {
        table.MoveTo = moveTo;
        table.LineTo = lineTo;
        table.AddArc = addArc;
    });
    static const SuiteOffer offers[] = {
        offerOf(suites::kEffectCustomUI, true, true, customUI),  offerOf(suites::kDrawbotDraw, true, true, drawTable),
        offerOf(suites::kDrawbotSupplier, true, true, supplier), offerOf(suites::kDrawbotSurface, true, true, surface),
        offerOf(suites::kDrawbotPath, true, true, path),
    };
    return offers;
}

}  // namespace quillon::host
