// An instance's block: made, made again, flattened, ended.

#include <algorithm>

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

// One control, whose value each frame notes.
const char* const kValue =
    "var p, seen; function setup() { p = QL_initParam('p', 1, 'P'); QL_setParamValue(p, 3); }"
    "function draw() { seen = QL_getParamValue(p); }";

class Lifecycle : public ShellTest {
protected:
    static int Calls(const HostSession& session, Callback callback) { return session.records().count(callback); }
};

TEST_F(Lifecycle, ResetupRefreshesThePanelAndAsksOldHostsForARender) {
    const struct {
        HostSettings settings;
        bool isForced;
    } kCases[] = {
        {AfterEffects(13, 9), false}, {AfterEffects(13, 8), true},  {AfterEffects(12, 9), true},
        {AfterEffects(14, 0), true},  {AfterEffects(14, 9), false}, {Premiere(13, 8), false},
    };
    for (const auto& [settings, isForced] : kCases) {
        SCOPED_TRACE(settings.versionMajor * 100 + settings.versionMinor);
        maps = {};
        HostSession& session = start(kValue, settings);
        HostInstance& instance = session.newInstance();
        const host::Answer setup = session.sequenceSetup(instance);
        EXPECT_EQ(setup.out.out_flags, 0);
        EXPECT_THAT(maps.paramOfHostIndex, IsEmpty());

        const Bytes flat = session.save(instance);
        EXPECT_EQ(flat, Bytes(8192));
        HostInstance& loaded = session.newInstance();
        loaded.sequenceData = session.handles().makeWith(flat);
        session.clearRecords();
        const host::Answer resetup = session.sequenceResetup(loaded);
        EXPECT_EQ(resetup.out.out_flags, 0x20000 | (isForced ? PF_OutFlag_FORCE_RERENDER : 0));
        EXPECT_EQ(maps.paramOfHostIndex, (std::map<std::uint32_t, std::uint32_t>{{1, 0}}));
        EXPECT_THAT(session.records().paramUIUpdates, IsEmpty());
        EXPECT_EQ(Calls(session, Callback::disposeHandle), 0);
    }
}

TEST_F(Lifecycle, FlatteningLeavesTheInstanceAlive) {
    HostSession& session = start(kValue);
    HostInstance& instance = session.apply();
    SequenceHandle* const engineHandle = Block(instance).handle;
    instance.setFloat(1, 8);
    EXPECT_EQ(session.sequenceFlatten(instance).error, 0);
    ASSERT_NE(instance.flatData, nullptr);

    HostInstance& flat = session.newInstance();
    std::swap(flat.sequenceData, instance.flatData);
    EXPECT_EQ(session.sequenceFlatten(flat).error, 0) << "a flat one may be flattened again";
    EXPECT_EQ(session.sequenceSetdown(flat).error, 0);
    EXPECT_EQ(Block(instance).handle, engineHandle);
    EXPECT_EQ(session.renderFrame(instance, {Picture(session)}).error(), 0);
    EXPECT_EQ(eval("seen"), "8");
    session.remove(instance);
    EXPECT_EQ(session.handles().aliveCount(), 2u) << "the global data and what the last flatten gave";
}

TEST_F(Lifecycle, SlotsAreTheInstancesOwnAndUsedAgain) {
    HostSession& session = start(kValue);
    HostInstance& first = session.apply();
    HostInstance& second = session.apply();
    const std::uint32_t slot = Block(first).handle->slot;
    EXPECT_NE(Block(second).handle->slot, slot);
    second.setFloat(1, 5);
    EXPECT_EQ(session.renderFrame(second, {Picture(session)}).error(), 0);

    // A setup with a block in place ends that one first.
    const PF_Handle old = first.sequenceData;
    session.clearRecords();
    EXPECT_EQ(session.sequenceSetup(first).error, 0);
    EXPECT_FALSE(session.handles().isAlive(old));
    EXPECT_EQ(Calls(session, Callback::disposeHandle), 1);
    EXPECT_EQ(Block(first).handle->slot, slot);

    session.remove(first);
    // Nothing is selected now; what comes next must not look for it.
    EXPECT_EQ(session.paramsSetup().error, 0);
    HostInstance& third = session.newInstance();
    EXPECT_EQ(session.sequenceSetup(third).error, 0);
    EXPECT_EQ(Block(third).handle->slot, slot);
    EXPECT_EQ(engine.parameterInfo(0)->floatAt(0), 5.0f) << "the new one is selected, but not current yet";
    session.faults().fail(Callback::checkoutParam);
    EXPECT_EQ(session.renderFrame(second, {Picture(session)}).error(), 0);
    EXPECT_EQ(eval("seen"), "5") << "the second keeps its values";
    // The current one ends: what is asked next finds no instance.
    session.remove(second);
    EXPECT_EQ(session.paramsSetup().error, 0);
}

// Hosts may copy a live block instead of flattening it, and bring back the bytes of an earlier process.
TEST_F(Lifecycle, CopiesEndNothingAndStrangersPassTheInputThrough) {
    for (const HostSettings& settings : kHosts) {
        HostSession& session = start(kValue, settings);
        HostInstance& original = session.apply();
        HostInstance& copy = session.newInstance();
        const auto copyBlock = [&] {
            copy.sequenceData = session.handles().makeWith(session.handles().bytes(original.sequenceData));
        };
        copyBlock();
        EXPECT_EQ(session.sequenceSetdown(copy).error, 0);
        original.setFloat(1, 8);
        EXPECT_EQ(session.renderFrame(original, {Picture(session)}).error(), 0);
        EXPECT_EQ(eval("seen"), "8") << "the original lives on";

        copyBlock();
        EXPECT_EQ(session.sequenceResetup(copy).error, 0);
        EXPECT_NE(Block(copy).handle, Block(original).handle);
        session.remove(original);
        copy.setFloat(1, 5);
        EXPECT_EQ(session.renderFrame(copy, {Picture(session)}).error(), 0);
        EXPECT_EQ(eval("seen"), "5");

        HostInstance& stranger = session.newInstance();
        Bytes stale = session.handles().bytes(copy.sequenceData);
        stale[25] = std::byte{1};
        std::fill(stale.begin() + 32, stale.begin() + 40, std::byte{0x58});
        stranger.sequenceData = session.handles().makeWith(stale);
        session.clearRecords();
        EXPECT_EQ(session.renderFrame(stranger, {Picture(session)}).error(), 0);
        EXPECT_THAT(session.records().copies, SizeIs(1));
        EXPECT_EQ(session.updateParamsUI(stranger).error, 0);
        EXPECT_EQ(session.userChangedParam(stranger, 1).error, 0);
        stranger.param(1).param_type = PF_Param_BUTTON;
        EXPECT_EQ(session.userChangedParam(stranger, 1).error, 0);
        stranger.param(1).param_type = PF_Param_FLOAT_SLIDER;
        EXPECT_EQ(session.sequenceFlatten(stranger).error, 0);
        EXPECT_EQ(session.sequenceSetup(stranger).error, 0);
        EXPECT_EQ(session.renderFrame(stranger, {Picture(session)}).error(), 0);
        EXPECT_EQ(eval("seen"), "3");
    }
}

TEST_F(Lifecycle, WithoutABlockNothingHappens) {
    HostSession& session = start(kNoControls);
    HostInstance& instance = session.newInstance();
    session.clearRecords();
    for (PF_Cmd cmd : {PF_Cmd_SEQUENCE_RESETUP, PF_Cmd_SEQUENCE_FLATTEN, PF_Cmd_SEQUENCE_SETDOWN,
                       PF_Cmd_UPDATE_PARAMS_UI, PF_Cmd_FRAME_SETDOWN}) {
        const host::Answer answer = session.send({.cmd = cmd, .instance = &instance, .hasParams = true});
        EXPECT_EQ(answer.error, 0) << cmd;
        EXPECT_EQ(answer.out.out_flags, 0) << cmd;
    }
    EXPECT_EQ(Calls(session, Callback::newHandle) + Calls(session, Callback::disposeHandle), 0);
}

}  // namespace
}  // namespace quillon::test
