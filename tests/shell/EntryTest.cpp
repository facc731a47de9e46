// The door: what goes through the gate, what comes out of the guard, and which events are ours.

#include <new>
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

// Callbacks that throw take the place of whatever may throw inside of a handler.
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
    HostSession& session = start(CopyScript(true), {}, kCopyFiles);
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

// What must be given back is given back in destructors, where an exception may be on its way already.
TEST_F(Entry, WhatAHostThrowsAtTheEndOfAScopeIsReportedOnceAsWell) {
    const struct {
        Callback atTheEnd;
        Callback before;  // throws first, where the two differ
        PF_Err frame, setup;
    } kCases[] = {
        {Callback::checkinParam, Callback::checkinParam, 515, 0},
        {Callback::releaseSuite, Callback::releaseSuite, 515, 515},
        {Callback::unlockHandle, Callback::unlockHandle, 0, 515},
        {Callback::checkinParam, Callback::floatingPointColor, 77, 0},
        {Callback::releaseSuite, Callback::checkoutParam, 77, 515},
    };
    HostSession& session = start(ScriptOf("add(3); add(1);"));
    HostInstance& instance = session.apply();
    for (const auto& row : kCases) {
        session.hooks().at[row.before] = [](auto&) { throw 77; };
        session.hooks().at[row.atTheEnd] = [](auto&) { throw std::bad_alloc(); };
        session.clearRecords();
        EXPECT_EQ(session.renderFrame(instance, {Picture(session)}).error(), row.frame);
        EXPECT_LE(session.records().count(Callback::checkinParam), session.records().count(Callback::checkoutParam));
        EXPECT_EQ(session.sequenceSetup(session.newInstance()).error, row.setup);
        session.hooks().at.clear();
        session.clearViolations();  // a release that throws has not released
        EXPECT_EQ(session.renderFrame(instance, {Picture(session)}).error(), 0);
    }
}

TEST_F(Entry, MissingRecordsAreNoWork) {
    HostSession& session = start(ScriptOf("add(1);"));
    HostInstance& instance = session.apply();
    PF_UserChangedParamExtra changed{1};
    const host::Selector kSelectors[] = {
        {.cmd = PF_Cmd_USER_CHANGED_PARAM, .instance = &instance, .hasParams = true},
        {.cmd = PF_Cmd_USER_CHANGED_PARAM, .instance = &instance, .extra = &changed},
        {.cmd = PF_Cmd_RENDER, .instance = &instance, .hasParams = true},
        {.cmd = PF_Cmd_SMART_PRE_RENDER, .instance = &instance},
        {.cmd = PF_Cmd_SMART_RENDER, .instance = &instance},
    };
    for (const host::Selector& selector : kSelectors) EXPECT_EQ(session.send(selector).error, 0) << selector.cmd;
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

TEST_F(Entry, EventsAreHandledFromTheFirstColorUpToTheFirstPoint) {
    const std::pair<const char*, std::vector<PF_EventOutFlags>> kCases[] = {
        // kinds of the controls, flags by index
        {"1, 3, 1, 2, 1", {4, 4, 1, 1, 4, 4}},
        {"2, 3, 1", {4, 4, 4, 4}},
        {"1, 2, 1", {1, 1, 4, 4}},
    };
    for (const auto& [kinds, flagsByIndex] : kCases) {
        maps = {};
        HostSession& session = start(std::string("function setup() { [") + kinds +
                                     "].forEach(function (k, i) { QL_initParam('p' + i, k, 'P'); }); }"
                                     " function draw() {}");
        HostInstance& instance = session.apply();
        for (std::size_t index = 0; index < flagsByIndex.size(); ++index) {
            host::HostEvent event(PF_Event_DO_CLICK, static_cast<PF_ParamIndex>(index));
            event.extra.evt_out_flags = 4;
            EXPECT_EQ(session.event(instance, event.extra).error, 0);
            EXPECT_EQ(event.extra.evt_out_flags, flagsByIndex[index]) << kinds << " at " << index;
            EXPECT_EQ(event.extra.u.do_click.send_drag, 0);
        }
    }
}

}  // namespace
}  // namespace quillon::test
