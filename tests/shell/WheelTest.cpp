// The color wheel of a listed control, which no event reaches by itself.

#include "host/HostEvent.h"
#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

constexpr A_long kLeft = 20, kTop = 30, kWidth = 120, kHeight = 140;  // R is 50, the center (60, 70)

class Wheel : public ShellTest {
protected:
    void open() {
        session =
            &start("function setup() { QL_initParam('c', 3, 'C'); QL_initParam('p', 2, 'P'); } function draw() {}");
        instance = &session->apply();
        maps.customUiIndices = {1};
        instance->setColor(1, {.alpha = 1, .red = 0, .green = 1, .blue = 0});
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

}  // namespace
}  // namespace quillon::test
