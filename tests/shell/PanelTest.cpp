// Names and states from the script to the host's panel, and changed controls from there.

#include "host/HostEvent.h"
#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

class Panel : public ShellTest {};

const char* const kPanel =
    "add(1); QL_setParamEnabled(add(9), 0); add(8, 1);"
    "p.push(QL_initParam('long', 12, 'This name is longer than what the host has')); add(3);";

TEST_F(Panel, RefreshEditsACopyOfNameAndEnabledState) {
    HostSession& session = start(ScriptOf(kPanel, "QL_setParamEnabled(p[0], QL_getParamValue(p[0]) > 1);"));
    HostInstance& instance = session.newInstance();
    EXPECT_EQ(session.sequenceSetup(instance).error, 0);
    instance.param(2).ui_flags = 0x205;
    instance.param(3).ui_flags = 0x225;
    session.hooks().before = [](PF_Cmd, PF_InData& in, PF_OutData&) { in.num_params = 2; };  // is no bound
    for (float value : {1.0f, 2.0f}) {
        instance.setFloat(1, value);
        session.clearRecords();
        const host::Answer answer = session.updateParamsUI(instance);
        EXPECT_EQ(answer.error, 0);
        EXPECT_EQ(answer.out.out_flags, 0x20000);
        // The very first sweep finds no map yet, and the value on this side is the default.
        const auto& updates = session.records().paramUIUpdates;
        ASSERT_THAT(updates, SizeIs(4));
        EXPECT_EQ(updates[0].def.ui_flags, value > 1 ? 0 : 32);
        EXPECT_EQ(updates[1].def.ui_flags, 0x225);
        EXPECT_EQ(updates[2].def.ui_flags, 0x205);
        EXPECT_STREQ(updates[2].def.PF_DEF_NAME, "This name is longer than what t");
        EXPECT_STREQ(updates[1].def.PF_DEF_NAME, "P");
        EXPECT_EQ(updates[0].def.u.fs_d.value, value);
        EXPECT_EQ(updates[0].def.flags, 96);
    }
    EXPECT_EQ(maps.paramOfHostIndex, (std::map<std::uint32_t, std::uint32_t>{{1, 0}, {2, 1}, {3, 3}, {4, 4}}));
}

TEST_F(Panel, RefreshSendsNothingAfterAnErrorAndFallsBackByVersion) {
    const char* const kUtils = "PF Param Utils Suite";
    HostSession& session = start(ScriptOf(kPanel));
    HostInstance& instance = session.apply();
    const auto updates = [&] {
        session.clearRecords();
        maps.paramOfHostIndex.clear();
        const host::Answer answer = session.updateParamsUI(instance);
        EXPECT_EQ(answer.error, 0);
        EXPECT_EQ(answer.out.out_flags, 0x20000);
        EXPECT_THAT(maps.paramOfHostIndex, SizeIs(4));
        return std::ssize(session.records().paramUIUpdates);
    };
    session.faults().failKey(Callback::updateParamUI, 2, 99);
    EXPECT_EQ(updates(), 2);
    for (int version : {3, 2, 1}) {
        session.faults().clear();
        session.faults().offerOnly(kUtils, version);
        EXPECT_EQ(updates(), 4);
        EXPECT_EQ(session.records().count(Callback::acquireSuite, kUtils, version), 1);
        EXPECT_EQ(session.records().count(Callback::acquireSuite, kUtils, 1), version == 1);
        EXPECT_EQ(session.records().count(Callback::releaseSuite, kUtils, version), 1);
    }
    session.faults().clear();
    session.faults().refuseSuite(kUtils);
    EXPECT_EQ(updates(), 0);
    session.faults().clear();
    session.faults().nullSuite(kUtils);
    EXPECT_EQ(updates(), 0);
}

TEST_F(Panel, PanelUpdateSweepsThenAsksTheScriptWithoutLockOrComposition) {
    HostSession& session = start(ScriptOf("add(1); add(4);",
                                          "seen = [QL_getParamValue(p[0]), QL_getContextExtent(),"
                                          " QL_getSurfaceDim(QL_initRenderTarget(2, 2, 8))];"));
    HostInstance& instance = session.apply();
    EXPECT_EQ(eval("seen"), "[0,[0,0,1],false]");
    instance.setFloat(1, 6);
    session.clearRecords();
    const StolenLock thief;
    EXPECT_EQ(session.updateParamsUI(instance).error, 0);
    EXPECT_THAT(session.records().paramCheckouts, ElementsAre(Field(&host::ParamCheckout::index, 1)));
    EXPECT_EQ(engine.parameterInfo(0)->floatAt(0), 6.0f);
    EXPECT_EQ(session.records().count(Callback::effectLayer), 0);
}

TEST_F(Panel, ChangedControlIsCheckedInOrder) {
    HostSession& session = start(ScriptOf("add(3);"));
    HostInstance& instance = session.apply();
    HostInstance& bare = session.newInstance();
    session.faults().withoutBasicSuite();
    EXPECT_EQ(session.userChangedParam(bare, 1).error, 516);
    EXPECT_EQ(session.userChangedParam(instance, 0).error, 516);
    session.faults().clear();
    session.faults().refuseSuite("PF ColorParamSuite");
    EXPECT_EQ(session.userChangedParam(bare, 1).error, 0);
    EXPECT_EQ(session.userChangedParam(instance, 0).error, 0);
    EXPECT_EQ(session.userChangedParam(instance, 1).error, 516);
    EXPECT_EQ(session.renderFrame(instance, {Picture(session)}).error(), 516);
    EXPECT_EQ(session.updateParamsUI(instance).error, 516);
}

TEST_F(Panel, ButtonRestartsTheScriptOfAReloadedInstance) {
    const struct {
        HostSettings settings;
        bool isReloaded;
        PF_OutFlags flags;
        int runs;
    } kCases[] = {
        {AfterEffects(13, 9), false, 0, 1},
        {AfterEffects(13, 9), true, 0x20000, 2},
        {AfterEffects(13, 8), true, 0x20000 | PF_OutFlag_FORCE_RERENDER, 2},
        {Premiere(13, 9), true, 0x20000 | PF_OutFlag_FORCE_RERENDER, 2},
    };
    for (const auto& row : kCases) {
        // A restart empties the script's variables.
        HostSession& session = start(ScriptOf("add(1);"), row.settings);
        HostInstance& made = session.apply();
        HostInstance& instance = row.isReloaded ? session.load(session.save(made)) : made;
        instance.param(1).param_type = PF_Param_BUTTON;
        eval("seen = 'before'");
        Block(instance).recordFrameSize = 0;
        {
            const StolenLock thief;
            EXPECT_EQ(session.userChangedParam(instance, 1).error, 512);
        }
        HostInstance& other = session.apply();
        const host::Answer answer = session.userChangedParam(instance, 1);
        EXPECT_EQ(answer.error, 0);
        EXPECT_EQ(answer.out.out_flags, row.flags);
        EXPECT_EQ(eval("seen"), row.runs == 1 ? "\"before\"" : "undefined");
        EXPECT_EQ(Block(instance).recordFrameSize, row.isReloaded);
        // Neither the pressed instance nor another one passes its input through from then on.
        instance.param(1).param_type = PF_Param_FLOAT_SLIDER;
        for (HostInstance* drawn : {&instance, &other}) {
            drawn->setFloat(1, 4);
            session.clearRecords();
            EXPECT_EQ(session.renderFrame(*drawn, {Picture(session)}).error(), 0);
            EXPECT_EQ(eval("seen"), "[4]");
            EXPECT_THAT(session.records().copies, IsEmpty());
        }
    }
}

// The color wheel of a listed control; nothing lists one yet.
TEST_F(Panel, WheelTakesHueAndSaturationOrAlphaFromADrag) {
    constexpr A_long kLeft = 20, kTop = 30, kWidth = 120, kHeight = 140;  // R is 50, the center (60, 70)
    const struct {
        A_long x, y;
        std::vector<int> color;  // A, R, G, B
        PF_WindowType window = PF_Window_EFFECT;
    } kCases[] = {
        {60, 70, {255, 255, 255, 255}},             // the center
        {35, 70, {255, 255, 127, 127}},             // hue 2 pi, which is 0
        {85, 70, {255, 127, 255, 255}},             // hue pi
        {60, 95, {255, 191, 127, 255}},             // hue 3/2 pi
        {60, 45, {255, 191, 255, 127}},             // hue 1/2 pi
        {10, 70, {255, 0, 255, 0}},                 // R itself is outside
        {24, 119, {51, 0, 255, 0}},                 // below the wheel: x / width
        {60, 70, {255, 0, 255, 0}, PF_Window_COMP}  // is not the panel
    };
    HostSession& session = start(ScriptOf("add(3); add(2);"));
    HostInstance& instance = session.apply();
    maps.customUiIndices = {1};
    for (const auto& [x, y, wanted, window] : kCases) {
        instance.setColor(1, {.alpha = 1, .red = 0, .green = 1, .blue = 0});
        host::HostEvent event(PF_Event_DRAG, 1);
        event.context.w_type = window;
        event.extra.effect_win.area = PF_EA_CONTROL;
        event.extra.effect_win.current_frame = {kLeft, kTop, kLeft + kWidth, kTop + kHeight};
        event.extra.u.do_click.screen_point = {kLeft + x, kTop + y};
        EXPECT_EQ(session.event(instance, event.extra).error, 0);
        const PF_UnionablePixel pixel = instance.param(1).u.cd.value;
        EXPECT_THAT((std::vector<int>{pixel.alpha, pixel.red, pixel.green, pixel.blue}), ElementsAreArray(wanted))
            << x << ',' << y;
    }
}

}  // namespace
}  // namespace quillon::test
