// The render phase with one thing missing: its code, its message, and a good frame afterwards.

#include <algorithm>

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

struct RenderFault {
    const char* name;
    void (*order)(host::Faults&);
    PF_Err error;
    HostKind kind = HostKind::afterEffects;
    bool onSmartOnly = false;
    bool hasMessage = false;
};

class FailingRender : public ShellTest, public ::testing::WithParamInterface<RenderFault> {};

TEST_P(FailingRender, AnswersWithItsCodeAndDrawsAgainAfterwards) {
    const RenderFault& row = GetParam();
    for (const HostSettings& settings : kHosts) {
        if (settings.kind != row.kind || (row.onSmartOnly && settings.route == Route::classic)) continue;
        HostSession& session = start(kFilling, settings, kFill);
        HostInstance& instance = session.apply();
        const FrameRequest request{Picture(session)};
        session.hooks().before = [&](PF_Cmd cmd, PF_InData& in, PF_OutData&) {
            if (cmd != PF_Cmd_RENDER && cmd != PF_Cmd_SMART_RENDER) return session.faults().clear();
            row.order(session.faults());
            if (!session.faults().hasBasicSuite()) in.pica_basicP = nullptr;
        };
        EXPECT_EQ(session.renderFrame(instance, request).renderError, row.error);
        EXPECT_THAT(session.records().messages, SizeIs(row.hasMessage ? 1 : 0));
        for (const host::Message& message : session.records().messages) {
            EXPECT_TRUE(message.isError);
            EXPECT_EQ(message.text, "Couldn't load suite.");
        }
        session.hooks().before = nullptr;
        session.faults().clear();
        const FrameResult frame = session.renderFrame(instance, request);
        EXPECT_EQ(frame.error(), 0);
        const auto middle = frame.output->row(0).subspan(0, 4);
        const std::byte kWanted[] = {std::byte{64}, std::byte{128}, std::byte{191}, std::byte{255}};
        EXPECT_TRUE(std::ranges::equal(middle, kWanted));
    }
}

INSTANTIATE_TEST_SUITE_P(
    , FailingRender,
    ::testing::Values(
        RenderFault{"pixels", [](auto& f) { f.fail(Callback::checkoutPixels, 81); }, 81, HostKind::afterEffects, true},
        RenderFault{"output", [](auto& f) { f.fail(Callback::checkoutOutput, 82); }, 82, HostKind::afterEffects, true},
        RenderFault{"null_data_suite", [](auto& f) { f.nullSuite("PF Pixel Data Suite"); }, 13},
        RenderFault{"null_world_suite", [](auto& f) { f.nullSuite("PF World Suite"); }, 0, HostKind::afterEffects,
                    false, true},
        RenderFault{"no_format", [](auto& f) { f.fail(Callback::worldFormat); }, 0},
        RenderFault{"no_format_suite", [](auto& f) { f.refuseSuite("PF Pixel Format Suite"); }, 0, HostKind::premiere},
        RenderFault{"no_format_of_world", [](auto& f) { f.fail(Callback::premiereFormat); }, 0, HostKind::premiere}),
    [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace quillon::test
