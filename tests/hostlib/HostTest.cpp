// What the host gives: suites by host and fault, frames by both routes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "hostlib/FakeEffect.h"

namespace quillon::host::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

bool isHad(HostSession& session, const char* name, std::int32_t version) {
    bool isThere = false;
    act = [&](const Given& given) -> PF_Err {
        const void* table = nullptr;
        const SPErr error = given.in.pica_basicP->AcquireSuite(name, version, &table);
        isThere = error == 0 && table;
        return isThere ? given.in.pica_basicP->ReleaseSuite(name, version) : 0;
    };
    session.about();
    return isThere;
}

TEST(Suites, AreThoseOfTheHostAndFailOnCommand) {
    HostSession afterEffects{EffectModule(fakeEntry)};
    HostSession premiere{EffectModule(fakeEntry), {.kind = HostKind::premiere}};
    const struct {
        const char* name;
        std::int32_t version;
        bool inAfterEffects, inPremiere;
    } kCases[] = {
        {"PF Handle Suite", 2, true, true},
        {"PF Handle Suite", 1, false, false},
    };
    for (const auto& [name, version, inAfterEffects, inPremiere] : kCases) {
        EXPECT_EQ(isHad(afterEffects, name, version), inAfterEffects) << name << version;
        EXPECT_EQ(isHad(premiere, name, version), inPremiere) << name << version;
    }
    afterEffects.faults().offerOnly("PF Param Utils Suite", 2);
    EXPECT_FALSE(isHad(afterEffects, "PF Param Utils Suite", 3));
    EXPECT_TRUE(isHad(afterEffects, "PF Param Utils Suite", 2));
    afterEffects.faults().nullSuite("PF Handle Suite");
    EXPECT_FALSE(isHad(afterEffects, "PF Handle Suite", 2));
    afterEffects.faults().refuseSuite("PF World Suite");
    EXPECT_FALSE(isHad(afterEffects, "PF World Suite", 2));
    EXPECT_THAT(afterEffects.violations(), IsEmpty());
}

TEST(Faults, StrikeWhereTheyAreToldTo) {
    HostSession session{EffectModule(fakeEntry)};
    std::vector<PF_Err> errors;
    act = [&](const Given& given) -> PF_Err {
        PF_ParamDef def;
        for (PF_ParamIndex index : {0, 0, 0}) {
            errors.push_back(given.in.inter.checkout_param(given.in.effect_ref, index, 0, 1, 30, &def));
            given.in.inter.checkin_param(given.in.effect_ref, &def);
        }
        return 0;
    };
    session.faults().failNth(Callback::checkoutParam, 2, 42);
    session.about();
    session.faults().failKey(Callback::checkoutParam, 7, 43);
    session.about();
    session.faults().failKey(Callback::checkoutParam, 0, 44);
    session.about();
    EXPECT_THAT(errors, ElementsAre(0, 42, 0, 0, 0, 0, 44, 44, 44));
}

// Both frames leave the output's size as half of the input's, right half, and copy what they are given.
PF_Err halve(const Given& given) {
    auto* const pre = static_cast<PF_PreRenderExtra*>(given.extra);
    auto* const smart = static_cast<PF_SmartRenderExtra*>(given.extra);
    if (given.cmd == PF_Cmd_GLOBAL_SETUP) given.out.out_flags2 = PF_OutFlag2_SUPPORTS_SMART_RENDER;
    if (given.cmd == PF_Cmd_SMART_PRE_RENDER) {
        PF_RenderRequest request = pre->input->output_request;
        request.rect.left = request.rect.right / 2;
        PF_CheckoutResult result;
        const PF_Err error = pre->cb->checkout_layer(given.in.effect_ref, 0, 1, &request, 0, 1, 30, &result);
        pre->output->result_rect = result.result_rect;
        pre->output->max_result_rect = result.max_result_rect;
        return error;
    }
    if (given.cmd == PF_Cmd_SMART_RENDER) {
        PF_EffectWorld *input = nullptr, *output = nullptr;
        smart->cb->checkout_layer_pixels(given.in.effect_ref, 1, &input);
        smart->cb->checkout_output(given.in.effect_ref, &output);
        return given.in.utils->copy(given.in.effect_ref, input, output, nullptr, nullptr);
    }
    if (given.cmd == PF_Cmd_FRAME_SETUP) given.out.width = given.params[0]->u.ld.width / 2;
    if (given.cmd != PF_Cmd_RENDER) return 0;
    PF_Rect right{given.output->width, 0, 2 * given.output->width, given.output->height};
    return given.in.utils->copy(given.in.effect_ref, &given.params[0]->u.ld, given.output, &right, nullptr);
}

TEST(Frames, ComeOutInTheSizeAskedForOnBothRoutes) {
    for (const Route route : {Route::smart, Route::classic})
        for (const int depth : {8, 16, 32}) {
            HostSession session{EffectModule(fakeEntry), {.route = route}};
            act = halve;
            session.start();
            const FrameRequest request{.input = session.newWorld(4, 3, depth)};
            for (A_long y = 0; y < 3; ++y)
                for (std::size_t i = 0; i < request.input->row(y).size(); ++i)
                    request.input->row(y)[i] = static_cast<std::byte>(31 * y + static_cast<int>(i));
            const FrameResult result = session.renderFrame(session.apply(), request);
            ASSERT_TRUE(result.output);
            EXPECT_EQ(result.error(), 0);
            EXPECT_EQ(result.output->tightBytes(), request.input->cut({2, 0, 4, 3}, 0)->tightBytes());
            EXPECT_EQ(session.records().copies.size(), 1u);
            EXPECT_THAT(session.violations(), IsEmpty());
        }
}

TEST(Frames, AreLeftOutWhereNoHostWouldMakeTheOutput) {
    HostSession session{EffectModule(fakeEntry), {.route = Route::classic}};
    HostInstance& instance = session.newInstance();
    const A_long kWidths[] = {0, -1, 30001, 2147483647};
    for (const A_long width : kWidths) {
        act = [=](const Given& given) { return given.out.width = width, 0; };
        const FrameResult result = session.renderFrame(instance, {.input = session.newWorld(4, 3, 8)});
        EXPECT_TRUE(result.leftOut && !result.output) << width;
    }
    EXPECT_EQ(session.records().count(Callback::copy), 0);
}

}  // namespace
}  // namespace quillon::host::test
