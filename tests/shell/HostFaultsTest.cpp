// One thing that the host lacks or refuses, in one stage: what comes of it, and a good frame afterwards.

#include <algorithm>
#include <functional>

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

using host::Faults;

enum class Stage { global, params, sequence, frame };

using Order = std::function<void(Faults&)>;

Order Fail(Callback callback, PF_Err error = Faults::kAnyError, int nth = 0) {
    return [=](Faults& faults) { nth ? faults.failNth(callback, nth, error) : faults.fail(callback, error); };
}
Order Refuse(const char* suite) {
    return [=](Faults& faults) { faults.refuseSuite(suite); };
}
Order Null(const char* suite) {
    return [=](Faults& faults) { faults.nullSuite(suite); };
}
const Order kNoBasic = [](Faults& faults) { faults.withoutBasicSuite(); };

struct HostFault {
    const char* name;
    Stage stage;
    HostSettings settings;
    Order order;
    const char* outcome;
    int lost = 0;  // handles that the fault leaves to nobody
};

class HostFaults : public ShellTest {
protected:
    // What each stage gives, as one line.
    std::string globalSetup(const HostFault& fault) {
        HostSession& session = load(kNoControls, fault.settings);
        fault.order(session.faults());
        session.allowLostHandles(fault.lost);
        const host::Answer answer = session.globalSetup();
        session.faults().clear();
        EXPECT_NE(answer.out.my_version, 0u);
        EXPECT_EQ(answer.out.out_flags & ~0x2000000, 0x4008025);
        EXPECT_NE(answer.out.out_flags2 & 0x400, 0);
        EXPECT_THAT(session.records().messages, IsEmpty());
        std::ostringstream line;
        line << answer.error << (answer.out.global_data ? ", data" : "") << ", " << session.handles().aliveCount()
             << " handles, " << session.records().pixelFormats.size() << " formats"
             << (answer.out.out_flags & 0x2000000 ? ", deep" : "") << (answer.out.out_flags2 & 0x1000 ? ", float" : "");
        return line.str();
    }
    std::string paramsSetup(const HostFault& fault) {
        HostSession& session =
            load("function setup() { [1, 7, 12].forEach(function (k, i) { QL_initParam('p' + i, k, 'P'); }); }",
                 fault.settings);
        session.globalSetup();
        fault.order(session.faults());
        const host::Answer answer = session.paramsSetup();
        session.faults().clear();
        EXPECT_EQ(answer.out.out_flags, *answer.out.return_msg ? 0x100 : 0);
        std::ostringstream line;
        line << answer.error << ", " << answer.out.num_params << " known, " << session.records().registeredUIs.size()
             << " shown, " << session.records().optionsButtonNames.size() << " buttons, " << answer.out.return_msg;
        return line.str();
    }
    std::string sequence(const HostFault& fault) {
        HostSession& session = start(kNoControls, fault.settings);
        HostInstance& instance = session.apply();
        HostInstance& fresh = session.newInstance();
        HostInstance& flat = session.newInstance();
        flat.sequenceData = session.handles().makeWith(Bytes(8192));
        const PF_Handle flatBlock = flat.sequenceData;
        fault.order(session.faults());
        std::ostringstream line;
        const auto add = [&](auto send) {
            session.allowLostHandles(fault.lost);
            const host::Answer answer = send();
            EXPECT_FALSE(answer.out.sequence_data || answer.out.out_flags) << "the host's block stays as it is";
            line << answer.error << ' ';
        };
        add([&] { return session.sequenceSetup(fresh); });
        add([&] { return session.sequenceResetup(fresh); });
        add([&] { return session.sequenceFlatten(instance); });
        // Sent bare: the host keeps the block, whatever becomes of it.
        add([&] { return session.send({.cmd = PF_Cmd_SEQUENCE_RESETUP, .instance = &flat}); });
        EXPECT_TRUE(session.handles().isAlive(flatBlock));
        add([&] { return session.sequenceSetdown(instance); });
        line << (instance.sequenceData ? "kept" : "gone");
        return line.str();
    }
    std::string render(const HostFault& fault) {
        HostSession& session = start(kFilling, fault.settings, kFill);
        HostInstance& instance = session.apply();
        const FrameRequest request{Picture(session)};
        session.hooks().before = [&](PF_Cmd cmd, PF_InData&, PF_OutData&) {
            session.faults().clear();
            if (cmd == PF_Cmd_RENDER || cmd == PF_Cmd_SMART_RENDER) fault.order(session.faults());
        };
        std::string line = std::to_string(session.renderFrame(instance, request).renderError);
        for (const host::Message& message : session.records().messages) {
            EXPECT_TRUE(message.isError);
            line += ", " + message.text;
        }
        session.hooks().before = nullptr;
        session.faults().clear();
        const FrameResult frame = session.renderFrame(instance, request);
        EXPECT_EQ(frame.error(), 0);
        const std::byte kWanted[] = {std::byte{64}, std::byte{128}, std::byte{191}, std::byte{255}};
        EXPECT_TRUE(std::ranges::equal(frame.output->row(0).first(4), kWanted));
        return line;
    }
};

constexpr const char* kHandles = "PF Handle Suite";
constexpr const char* kEffectUI = "PF Effect UI Suite";
constexpr const char* kFormats = "PF Pixel Format Suite";
const HostSettings kSmart = AfterEffects(), kClassic = AfterEffects(13, 9, Route::classic), kPremiere = Premiere();

const HostFault kFaults[] = {
    {"no basic suite", Stage::global, kSmart, kNoBasic, "516, 0 handles, 0 formats, deep, float"},
    {"null handle suite", Stage::global, kSmart, Null(kHandles), "516, 0 handles, 0 formats, deep, float"},
    {"no memory", Stage::global, kSmart, Fail(Callback::newHandle), "512, 0 handles, 0 formats, deep, float"},
    {"no memory, Premiere", Stage::global, kPremiere, Fail(Callback::newHandle), "512, 0 handles, 6 formats"},
    {"no lock", Stage::global, kPremiere, Fail(Callback::lockHandle), "0, 1 handles, 6 formats", 1},
    {"no registry", Stage::global, kSmart, Refuse("AEGP Utility Suite"), "516, 1 handles, 0 formats, deep, float", 1},
    {"not registered", Stage::global, kSmart, Fail(Callback::registerAegp, 77), "77, 1 handles, 0 formats, deep, float",
     1},
    {"no formats", Stage::global, kPremiere, Refuse(kFormats), "0, data, 1 handles, 0 formats, deep, float"},

    {"the second control is a path", Stage::params, kSmart, Fail(Callback::addParam, 72, 2),
     "0, 4 known, 1 shown, 1 buttons, "},
    {"third control", Stage::params, kSmart, Fail(Callback::addParam, 73, 3), "73, 3 known, 0 shown, 0 buttons, "},
    {"no suite", Stage::params, kSmart, Refuse(kEffectUI),
     "516, 4 known, 0 shown, 0 buttons, Not able to acquire AEFX Suite."},
    {"no basic suite", Stage::params, kSmart, kNoBasic,
     "516, 4 known, 0 shown, 0 buttons, Not able to release AEFX Suite."},
    {"button", Stage::params, kSmart, Fail(Callback::setOptionsButtonName, 74), "74, 4 known, 0 shown, 0 buttons, "},
    {"registration", Stage::params, kSmart, Fail(Callback::registerUI, 75), "75, 4 known, 0 shown, 1 buttons, "},
    {"no button under Premiere", Stage::params, kPremiere, Refuse(kEffectUI), "0, 4 known, 1 shown, 0 buttons, "},

    {"no basic suite", Stage::sequence, kSmart, kNoBasic, "516 516 516 516 516 kept"},
    {"null handle suite", Stage::sequence, kSmart, Null(kHandles), "516 0 516 516 516 kept"},
    {"no memory", Stage::sequence, kSmart, Fail(Callback::newHandle), "4 0 0 0 0 gone"},
    {"no lock", Stage::sequence, kSmart, Fail(Callback::lockHandle), "0 0 0 0 0 gone", 1},

    {"pixels", Stage::frame, kSmart, Fail(Callback::checkoutPixels, 81), "81"},
    {"output", Stage::frame, kSmart, Fail(Callback::checkoutOutput, 82), "82"},
    {"null data suite", Stage::frame, kSmart, Null("PF Pixel Data Suite"), "13"},
    {"null data suite", Stage::frame, kClassic, Null("PF Pixel Data Suite"), "13"},
    {"null world suite", Stage::frame, kSmart, Null("PF World Suite"), "0, Couldn't load suite."},
    {"null world suite", Stage::frame, kClassic, Null("PF World Suite"), "0, Couldn't load suite."},
    {"no format", Stage::frame, kSmart, Fail(Callback::worldFormat), "0"},
    {"no format", Stage::frame, kClassic, Fail(Callback::worldFormat), "0"},
    {"no format suite", Stage::frame, kPremiere, Refuse(kFormats), "0"},
    {"no format of the world", Stage::frame, kPremiere, Fail(Callback::premiereFormat), "0"},
};

TEST_F(HostFaults, HaveOneOutcomeEach) {
    for (const HostFault& fault : kFaults) {
        SCOPED_TRACE(testing::Message() << fault.name << ", stage " << static_cast<int>(fault.stage));
        EXPECT_EQ(fault.stage == Stage::global     ? globalSetup(fault)
                  : fault.stage == Stage::params   ? paramsSetup(fault)
                  : fault.stage == Stage::sequence ? sequence(fault)
                                                   : render(fault),
                  fault.outcome);
    }
}

}  // namespace
}  // namespace quillon::test
