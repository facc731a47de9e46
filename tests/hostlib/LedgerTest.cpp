// What an effect does wrong is reported once; what is right is not.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>

#include "host/HostSession.h"

namespace quillon::host::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// An effect that does what a test wants: what it runs for a selector is `act` of the calling thread.
struct Given {
    PF_Cmd cmd;
    PF_InData& in;
    PF_OutData& out;
    PF_ParamDef** params;
    PF_LayerDef* output;
    void* extra;

    template <class Table>
    const Table* acquire(const SuiteKey<Table>& key) const {
        const void* table = nullptr;
        in.pica_basicP->AcquireSuite(key.name, key.version, &table);
        return static_cast<const Table*>(table);
    }
    template <class Table>
    SPErr release(const SuiteKey<Table>& key) const {
        return in.pica_basicP->ReleaseSuite(key.name, key.version);
    }
};

std::function<PF_Err(const Given&)>& Act() {
    static thread_local std::function<PF_Err(const Given&)> deed;
    return deed;
}

PF_Err FakeEntry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
    return Act() ? Act()({cmd, *in, *out, params, output, extra}) : PF_Err{PF_Err_NONE};
}

struct Misdeed {
    const char* name;
    const char* reported;  // empty: no fault
    PF_Err (*deed)(const Given&);
};

constexpr Misdeed kMisdeeds[] = {
    {"a kept suite", "\"PF Handle Suite\" 2 is not released",
     [](const Given& given) { return given.acquire(suites::kHandle) ? 0 : 1; }},
    {"a release under another version", "\"PF Param Utils Suite\" 3 is released but not held",
     [](const Given& given) {
         const void* table = nullptr;
         given.in.pica_basicP->AcquireSuite(suites::kParamUtils.name, 1, &table);
         given.in.pica_basicP->ReleaseSuite(suites::kParamUtils.name, 3);
         return given.in.pica_basicP->ReleaseSuite(suites::kParamUtils.name, 1);
     }},
    {"a suite that is used after its release", "PF_GetPixelFormat is called without its suite",
     [](const Given& given) {
         const auto* suite = given.acquire(suites::kWorld);
         given.release(suites::kWorld);
         PF_PixelFormat format;
         suite->PF_GetPixelFormat(given.output, &format);
         return 0;
     }},
    {"a lost handle", "is lost", [](const Given& given) { return given.in.utils->host_new_handle(8) ? 0 : 1; }},
    {"a handle disposed twice", "disposed twice",
     [](const Given& given) {
         PF_Handle handle = given.in.utils->host_new_handle(8);
         given.in.utils->host_dispose_handle(handle);
         given.in.utils->host_dispose_handle(handle);
         return 0;
     }},
    {"bytes after a handle's memory", "a handle's memory",
     [](const Given& given) {
         PF_Handle handle = given.in.utils->host_new_handle(8);
         (*handle)[8] = 1;
         given.in.utils->host_dispose_handle(handle);
         return 0;
     }},
    {"a lock that stays", "with 1 locks more",
     [](const Given& given) {
         given.in.utils->host_lock_handle(given.in.sequence_data);
         return 0;
     }},
    {"a field that names a dead handle", "out_data's frame_data is left naming",
     [](const Given& given) {
         given.out.frame_data = given.in.utils->host_new_handle(8);
         given.in.utils->host_dispose_handle(given.out.frame_data);
         return 0;
     }},
    {"a missing checkin", "1 controls checked out, 0 not to be had, 0 checked in",
     [](const Given& given) {
         PF_ParamDef def;
         return given.in.inter.checkout_param(given.in.effect_ref, 0, 0, 1, 30, &def);
     }},
    {"a checkin for a failing checkout", "",
     [](const Given& given) {
         PF_ParamDef def;
         given.in.inter.checkout_param(given.in.effect_ref, 99, 0, 1, 30, &def);
         return given.in.inter.checkin_param(given.in.effect_ref, &def);
     }},
    {"a written row end", "guard bytes of a world of 2 by 2",
     [](const Given& given) {
         reinterpret_cast<char*>(given.output->data)[2 * 4] = 0;
         return 0;
     }},
    {"another instance's reference", "effect_ref of another instance",
     [](const Given& given) { return given.in.inter.abort(nullptr) == 0 ? 1 : 0; }},
    {"an endless message", "return_msg has no end",
     [](const Given& given) {
         std::fill_n(given.out.return_msg, sizeof(given.out.return_msg), 'x');
         return 0;
     }},
    {"an exception", "an exception left", [](const Given&) -> PF_Err { throw 5; }},
};

TEST(Ledger, ReportsEachMisdeedOnce) {
    HostSession session{EffectModule(FakeEntry)};
    HostInstance& instance = session.newInstance();
    for (const auto& [name, reported, deed] : kMisdeeds) {
        instance.sequenceData = session.handles().make(16);
        Act() = deed;
        const FrameRequest request{.input = session.newWorld(2, 2, 8)};
        session.send({.cmd = PF_Cmd_RENDER, .instance = &instance, .frame = &request, .output = request.input});
        if (*reported)
            EXPECT_THAT(session.violations(), ElementsAre(HasSubstr(reported))) << name;
        else
            EXPECT_THAT(session.violations(), IsEmpty()) << name;
        session.clearViolations();
    }
    Act() = [](const Given& given) { return given.in.utils->host_new_handle(8) ? 0 : 1; };
    session.allowLostHandles(1);
    session.about();
    EXPECT_THAT(session.violations(), IsEmpty());
    session.about();
    EXPECT_THAT(session.violations(), ElementsAre("ABOUT: a handle of 8 bytes is lost: neither disposed nor given to "
                                                  "the host"));
}

TEST(Ledger, IsKeptApartForAnEntryFromACallback) {
    HostSession session{EffectModule(FakeEntry)};
    session.hooks().at[Callback::abort] = [&](const CallbackEvent&) { session.about(); };
    Act() = [](const Given& given) -> PF_Err {
        if (given.cmd == PF_Cmd_ABOUT) return given.acquire(suites::kColorParam) ? 0 : 1;  // and never released
        given.acquire(suites::kHandle);
        given.in.inter.abort(given.in.effect_ref);
        return given.release(suites::kHandle);
    };
    session.send({.cmd = PF_Cmd_COMPLETELY_GENERAL});
    EXPECT_THAT(session.violations(), ElementsAre(HasSubstr("ABOUT: suite \"PF ColorParamSuite\" 1")));
}

// Sizes that no host would make a world of.
TEST(Frames, AreLeftOutWhereNoHostWouldMakeTheOutput) {
    HostSession session{EffectModule(FakeEntry), {.route = Route::classic}};
    HostInstance& instance = session.newInstance();
    const A_long kWidths[] = {0, -1, 30001, 2147483647};
    for (const A_long width : kWidths) {
        Act() = [=](const Given& given) { return given.out.width = width, 0; };
        const FrameResult result = session.renderFrame(instance, {.input = session.newWorld(4, 3, 8)});
        EXPECT_TRUE(result.leftOut && !result.output) << width;
    }
    EXPECT_EQ(session.records().count(Callback::copy), 0);
}

}  // namespace
}  // namespace quillon::host::test
