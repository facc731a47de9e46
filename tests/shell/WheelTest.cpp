// The color wheel of a listed control, which no event reaches by itself.

#include <cmath>
#include <cstring>

#include "host/HostEvent.h"
#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

constexpr A_long kLeft = 20, kTop = 30, kWidth = 120, kHeight = 140;  // R is 50, the center (60, 70)

class Wheel : public ShellTest {
protected:
    void open(const HostSettings& settings = {}) {
        session = &start(
            "function setup() { QL_initParam('c', 3, 'C'); QL_initParam('p', 2, 'P'); }"
            "function draw() {}",
            settings);
        instance = &session->apply();
        maps.customUiIndices = {1};
        instance->setColor(1, {.alpha = 1, .red = 0, .green = 1, .blue = 0});
        session->clearRecords();
    }
    // The event as the effect leaves it; `x` and `y` from the control's corner.
    PF_EventExtra send(PF_EventType type, A_long x = 0, A_long y = 0, A_long window = 2, A_long area = 2) {
        host::HostEvent event(type, 1);
        event.context.w_type = window;
        event.extra.effect_win.area = area;
        event.extra.effect_win.current_frame = {kLeft, kTop, kLeft + kWidth, kTop + kHeight};
        if (type != PF_Event_DRAW) event.extra.u.do_click.screen_point = {kLeft + x, kTop + y};
        EXPECT_EQ(session->event(*instance, event.extra).error, 0);
        EXPECT_EQ(event.extra.evt_out_flags, 1);
        return event.extra;
    }
    std::vector<int> color() const {
        const PF_UnionablePixel pixel = instance->param(1).u.cd.value;
        return {pixel.alpha, pixel.red, pixel.green, pixel.blue};
    }
    HostSession* session = nullptr;
    HostInstance* instance = nullptr;
};

TEST_F(Wheel, DragTakesHueAndSaturationOrAlpha) {
    const struct {
        A_long x, y;
        std::vector<int> color;  // A, R, G, B
    } kCases[] = {
        {60, 70, {255, 255, 255, 255}},  // the center
        {35, 70, {255, 255, 127, 127}},  // hue 2 pi, which is 0
        {85, 70, {255, 127, 255, 255}},  // hue pi
        {60, 95, {255, 191, 127, 255}},  // hue 3/2 pi
        {60, 45, {255, 191, 255, 127}},  // hue 1/2 pi
        {10, 70, {255, 0, 255, 0}},      // R itself is outside
        {24, 119, {51, 0, 255, 0}},      // below the wheel: x / width
    };
    for (const auto& [x, y, wanted] : kCases) {
        open();
        const PF_EventExtra extra = send(PF_Event_DRAG, x, y);
        EXPECT_EQ(extra.u.do_click.continue_refcon[0], kLeft + x);
        EXPECT_THAT(color(), ElementsAreArray(wanted)) << x << ',' << y;
    }
    open();
    EXPECT_EQ(send(PF_Event_DRAG, -70, 5).u.do_click.continue_refcon[0], -50) << "with its sign";
    send(PF_Event_DRAG, 60, 70, PF_Window_COMP);
    EXPECT_EQ(send(PF_Event_DRAG, 60, 70, PF_Window_EFFECT, PF_EA_PARAM_TITLE).u.do_click.continue_refcon[0], 0);
    EXPECT_THAT(color(), ElementsAre(255, 0, 255, 0));
}

TEST_F(Wheel, DrawsTheWheelAndAMarker) {
    for (const HostSettings& settings : {AfterEffects(), Premiere()}) {
        open(settings);
        send(PF_Event_DRAW);
        const auto& drawings = session->records().drawings;
        ASSERT_THAT(drawings, SizeIs(2));
        const host::Drawing& image = drawings[0];
        EXPECT_EQ(image.call, Callback::drawImage);
        EXPECT_EQ(image.image.width, kWidth);
        EXPECT_EQ(image.image.height, kHeight);
        const auto pixel = [&](int x, int y) {
            std::uint32_t word = 0;
            const auto at = static_cast<std::size_t>(y * image.image.rowBytes + 4 * x);
            std::memcpy(&word, &image.image.bytes.at(at), sizeof word);
            return word;
        };
        EXPECT_THAT((std::vector{pixel(60, 70), pixel(85, 70), pixel(60, 45), pixel(2, 2), pixel(113, 70)}),
                    ElementsAre(0xFFFFFFFF, 0xFF7FFFFF, 0xFFBFFF7F, 0, 0));
        EXPECT_EQ(pixel(10, 134) >> 24, 0u);
        EXPECT_THAT((std::vector{pixel(110, 137), pixel(114, 10), pixel(119, 129)}),
                    ElementsAre(0xFFFFFFFF, 0xFEFFFFFF, 0xFE000000));
        EXPECT_EQ(drawings[1].call, Callback::strokePath);
        ASSERT_THAT(drawings[1].arcs, SizeIs(1));
        // Green: hue 2/3 pi, which is at -1/3 pi from the center, full saturation.
        const DRAWBOT_PointF32 center = drawings[1].arcs[0].center;
        EXPECT_NEAR(center.x, kLeft + 60 + 25, 1);
        EXPECT_NEAR(center.y, kTop + 70 - 50 * std::sqrt(0.75), 1);
        EXPECT_EQ(session->records().count(Callback::floatingPointColor), settings.kind == HostKind::premiere ? 0 : 1);
    }
}

}  // namespace
}  // namespace quillon::test
