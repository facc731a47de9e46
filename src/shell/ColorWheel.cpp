// The color wheel of a COLOR control in the host's effect panel. No event reaches it while no control is listed for a
// wheel, see EventGate.h.

#include <algorithm>
#include <cmath>
#include <numbers>

#include "shell/Drawbot.h"
#include "shell/HostCleanup.h"
#include "shell/HostVersion.h"
#include "shell/Selectors.h"
#include "shell/Suites.h"
#include "shell/WheelImage.h"

namespace quillon {

namespace {

// Below this line of the control's frame is the strip of alpha.
constexpr float kAlphaStripTop = 118;
constexpr auto kClickTool = static_cast<PF_ExtendedSuiteTool>(14);
constexpr float kMarkerRadius = 4;

bool IsOnControl(const PF_EventExtra& extra) {
    return extra.contextH && *extra.contextH && (*extra.contextH)->w_type == PF_Window_EFFECT &&
           extra.effect_win.area == PF_EA_CONTROL;
}

const WheelImage& WheelOf(const PF_EventExtra& extra) {
    const PF_UnionableRect& frame = extra.effect_win.current_frame;
    return WheelImage::OfSize(frame.right - frame.left, frame.bottom - frame.top);
}

struct FramePoint {
    float x, y;
};

FramePoint ToFrame(const PF_EventExtra& extra, const PF_Point& screen) {
    const PF_UnionableRect& frame = extra.effect_win.current_frame;
    return {static_cast<float>(screen.h - frame.left), static_cast<float>(screen.v - frame.top)};
}

PF_Err Click(SuiteCache& cache, PF_EventExtra& extra) {
    const PF_Err error = cache.get(suites::kHelper).PF_SetCurrentExtendedTool(kClickTool);
    if (error == PF_Err_NONE) {
        extra.u.do_click.send_drag = 1;
        extra.evt_out_flags = PF_EO_HANDLED_EVENT;
    }
    return error;
}

void Drag(PF_ParamDef& def, PF_EventExtra& extra) {
    if (!IsOnControl(extra)) return;
    const PF_Point screen = extra.u.do_click.screen_point;
    extra.u.do_click.continue_refcon[0] = screen.h;
    const FramePoint point = ToFrame(extra, screen);
    const WheelImage& wheel = WheelOf(extra);
    PF_UnionablePixel& pixel = def.u.cd.value;
    if (WheelColor color{}; wheel.colorAt(point.x, point.y, color)) {
        pixel.red = static_cast<A_u_char>(color.red * 255.0f);
        pixel.green = static_cast<A_u_char>(color.green * 255.0f);
        pixel.blue = static_cast<A_u_char>(color.blue * 255.0f);
    } else if (point.y > kAlphaStripTop && wheel.width() > 0) {
        const float alpha = point.x * 255.0f / static_cast<float>(wheel.width());
        pixel.alpha = static_cast<A_u_char>(std::clamp(alpha, 0.0f, 255.0f));
    } else {
        return;
    }
    def.uu.change_flags = PF_ChangeFlag_CHANGED_VALUE;
}

// Where the wheel shows this color, from its center.
FramePoint PositionOf(const WheelColor& color, float radius) {
    const float high = std::max({color.red, color.green, color.blue});
    const float chroma = high - std::min({color.red, color.green, color.blue});
    if (high <= 0 || chroma <= 0) return {0, 0};
    float sector = 0;
    if (high == color.red)
        sector = std::fmod((color.green - color.blue) / chroma + 6.0f, 6.0f);
    else if (high == color.green)
        sector = (color.blue - color.red) / chroma + 2;
    else
        sector = (color.red - color.green) / chroma + 4;
    const float angle = (sector / 3 - 1) * std::numbers::pi_v<float>;
    const float distance = chroma / high * radius;
    return {std::cos(angle) * distance, std::sin(angle) * distance};
}

// Gives an object of the drawing library back at the end of the scope.
auto ReleasedAtEnd(const DRAWBOT_SupplierSuite1& supplier, void* object) {
    return AtEnd([&supplier, object] {
        if (object) supplier.ReleaseObject(static_cast<DRAWBOT_ObjectRef>(object));
    });
}

void DrawWheel(const DrawbotSuites& drawbot, DRAWBOT_DrawRef reference, const PF_EventExtra& extra,
               const WheelColor& color) {
    DRAWBOT_SupplierRef supplier = nullptr;
    DRAWBOT_SurfaceRef surface = nullptr;
    if (drawbot.draw->GetSupplier(reference, &supplier) != 0 || drawbot.draw->GetSurface(reference, &surface) != 0)
        return;
    const WheelImage& wheel = WheelOf(extra);
    const PF_UnionableRect& frame = extra.effect_win.current_frame;
    const DRAWBOT_PointF32 origin{static_cast<float>(frame.left), static_cast<float>(frame.top)};

    DRAWBOT_ImageRef image = nullptr;
    drawbot.supplier->NewImageFromBuffer(supplier, wheel.width(), wheel.height(), wheel.width() * 4,
                                         kDRAWBOT_PixelLayout_32BGRA_Straight, wheel.pixels(), &image);
    const auto releaseImage = ReleasedAtEnd(*drawbot.supplier, image);
    if (image) drawbot.surface->DrawImage(surface, image, &origin, 1.0f);

    const DRAWBOT_ColorRGBA black{0, 0, 0, 1};
    DRAWBOT_PenRef pen = nullptr;
    DRAWBOT_PathRef path = nullptr;
    drawbot.supplier->NewPen(supplier, &black, 1.0f, &pen);
    const auto releasePen = ReleasedAtEnd(*drawbot.supplier, pen);
    drawbot.supplier->NewPath(supplier, &path);
    const auto releasePath = ReleasedAtEnd(*drawbot.supplier, path);
    if (!pen || !path) return;
    const FramePoint marker = PositionOf(color, wheel.radius());
    const DRAWBOT_PointF32 center{origin.x + wheel.centerX() + marker.x, origin.y + wheel.centerY() + marker.y};
    drawbot.path->AddArc(path, &center, kMarkerRadius, 0, 360);
    drawbot.surface->StrokePath(surface, pen, path);
}

PF_Err Draw(PF_InData& in, PF_OutData& out, const PF_ParamDef& def, SuiteCache& cache, PF_EventExtra& extra) {
    const PF_UnionablePixel& held = def.u.cd.value;
    WheelColor color{held.red / 255.0f, held.green / 255.0f, held.blue / 255.0f};
    if (!IsPremiere(in)) {
        PF_PixelFloat live{};
        const PF_Err error =
            cache.get(suites::kColorParam).PF_GetFloatingPointColorFromColorDef(in.effect_ref, &def, &live);
        if (error != PF_Err_NONE) return error;
        color = {live.red, live.green, live.blue};
    }
    DRAWBOT_DrawRef reference = nullptr;
    const PF_Err error = cache.get(suites::kEffectCustomUI).PF_GetDrawingReference(extra.contextH, &reference);
    if (error != PF_Err_NONE || !reference) return error;
    DrawbotSuites drawbot{};
    const AtEnd release([&] { AEFX_ReleaseDrawbotSuites(in, out, drawbot); });
    const PF_Err acquired = AEFX_AcquireDrawbotSuites(in, out, &drawbot);
    if (acquired == PF_Err_NONE) DrawWheel(drawbot, reference, extra, color);
    return acquired;
}

void AdjustCursor(PF_EventExtra& extra) {
    if (!IsOnControl(extra)) return;
    const FramePoint point = ToFrame(extra, extra.u.adjust_cursor.screen_point);
    const std::uint32_t pixel = WheelOf(extra).pixelAt(static_cast<int>(point.x), static_cast<int>(point.y));
    if (pixel >> 24 != 0) extra.u.adjust_cursor.set_cursor = PF_Cursor_EYEDROPPER;
}

}  // namespace

PF_Err ColorWheelEvent(PF_InData& in, PF_OutData& out, PF_ParamDef** params, PF_EventExtra& extra) {
    SuiteCache cache(in.pica_basicP);
    if (!params || !params[extra.effect_win.index]) return PF_Err_NONE;
    PF_ParamDef& def = *params[extra.effect_win.index];
    switch (extra.e_type) {
        case PF_Event_DO_CLICK:
            return Click(cache, extra);
        case PF_Event_DRAG:
            Drag(def, extra);
            break;
        case PF_Event_DRAW:
            return Draw(in, out, def, cache, extra);
        case PF_Event_ADJUST_CURSOR:
            AdjustCursor(extra);
            break;
        default:
            break;
    }
    return PF_Err_NONE;
}

}  // namespace quillon
