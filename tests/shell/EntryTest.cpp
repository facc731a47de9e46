// The door: what goes through the gate, what comes out of the guard, and which events are ours.

#include <stdexcept>

#include "host/HostEvent.h"
#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

class Entry : public ShellTest {};

TEST_F(Entry, SelectorsWithoutWorkNeedNoRecords) {
    start(kNoControls);
    for (PF_Cmd cmd : {2, 3, 9, 15, 16, 17, 18, 19, 20, 21, 22, 25, 26, 1000, -1})
        EXPECT_EQ(EntryPointFunc(cmd, nullptr, nullptr, nullptr, nullptr, nullptr), 0) << cmd;
}

// Callbacks that throw stand for whatever may throw inside of a handler. Those of a frame strike while the GL lock is
// held, the second pixel getter of each depth while the result is mapped as well.
TEST_F(Entry, OnlyAThrownIntIsACodeAndLocksAreLeftFree) {
    enum class Code : int { seven = 7 };
    const struct {
        const char* name;
        PF_Err code;
        void (*raise)();
    } kThrown[] = {
        {"int", 77, [] { throw 77; }},
        {"long", 515, [] { throw 77L; }},
        {"enum", 515, [] { throw Code::seven; }},
        {"bad_alloc", 515, [] { throw std::bad_alloc(); }},
    };
    HostSession& session = start(IdentityScript(), {}, IdentityFiles());
    HostInstance& instance = session.apply();
    const auto input = Picture(session);
    const Bytes wanted = input->tightBytes();
    for (const auto& [name, code, raise] : kThrown) {
        SCOPED_TRACE(name);
        session.hooks().at[Callback::newHandle] = [raise = raise](auto&) { raise(); };
        EXPECT_EQ(session.sequenceSetup(session.newInstance()).error, code);
        session.hooks().at.clear();
        for (int nth : {1, 2}) {
            int calls = 0;
            session.hooks().at[Callback::checkoutLayer] = [&, raise = raise](auto&) {
                if (++calls == nth) raise();
            };
            EXPECT_EQ(session.renderFrame(instance, {input}).sizeError, code);
            calls = 0;
            session.hooks().at = {{Callback::pixelDataFloat, session.hooks().at[Callback::checkoutLayer]}};
            EXPECT_EQ(session.renderFrame(instance, {input}).renderError, code);
            session.hooks().at.clear();
            EXPECT_EQ(session.renderFrame(instance, {input}).output->tightBytes(), wanted);
        }
    }
}

TEST_F(Entry, GateStopsOtherThreadsAndLetsItsOwnBackIn) {
    HostSession& session = start(kNoControls);
    HostInstance& instance = session.apply();
    std::string inner;
    session.hooks().at[Callback::checkoutLayer] = [&](auto&) {
        for (PF_Cmd cmd : {2, 9, 25}) EXPECT_FALSE(PassesGate(cmd, 30)) << cmd;
        inner = session.about().out.return_msg;
    };
    EXPECT_EQ(session.renderFrame(instance, {Picture(session)}).error(), 0);
    EXPECT_EQ(inner, "A test\n\n");
}

struct EventRow {
    const char* name;
    const char* kinds;  // of the controls in order
    std::vector<PF_EventOutFlags> flagsByIndex;
};

class EventGate : public ShellTest, public ::testing::WithParamInterface<EventRow> {};

TEST_P(EventGate, HandlesFromTheFirstColorUpToTheFirstPoint) {
    HostSession& session = start(std::string("function setup() { [") + GetParam().kinds +
                                 "].forEach(function (k, i) { QL_initParam('p' + i, k, 'P'); }); } function draw() {}");
    HostInstance& instance = session.apply();
    for (PF_ParamIndex index = 0; index < std::ssize(GetParam().flagsByIndex); ++index) {
        host::HostEvent event(PF_Event_DO_CLICK, index);
        event.extra.evt_out_flags = 4;
        EXPECT_EQ(session.event(instance, event.extra).error, 0);
        EXPECT_EQ(event.extra.evt_out_flags, GetParam().flagsByIndex[static_cast<std::size_t>(index)]) << index;
        EXPECT_EQ(event.extra.u.do_click.send_drag, 0);
    }
}

INSTANTIATE_TEST_SUITE_P(, EventGate,
                         ::testing::Values(EventRow{"both", "1, 3, 1, 2, 1", {4, 4, 1, 1, 4, 4}},
                                           EventRow{"point_first", "2, 3, 1", {4, 4, 4, 4}},
                                           EventRow{"no_color", "1, 2, 1", {1, 1, 4, 4}}),
                         [](const auto& row) { return row.param.name; });

}  // namespace
}  // namespace quillon::test
