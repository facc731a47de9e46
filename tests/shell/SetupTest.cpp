// GLOBAL_SETUP and ABOUT.

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

Files Config(const std::string& keys) {
    return {{"config.xml", keys}};
}

constexpr PrPixelFormat kBytes[] = {0x62677261, 0x62677278};
constexpr PrPixelFormat kWords[] = {0x62677258, 0x62677241};
constexpr PrPixelFormat kFloats[] = {0x62675241, 0x62675258};

class Setup : public ShellTest {};

TEST_F(Setup, GivesFlagsAndFormatsByHost) {
    const struct {
        HostKind kind;
        std::uint32_t flags, flags2;  // of config.xml
        std::uint32_t outFlags, outFlags2;
        int formats;  // bits: bytes, words, floats
    } kCases[] = {
        {HostKind::afterEffects, 33554464, 5120, 0x6008025, 0x1400, 0},
        {HostKind::premiere, 0, 0, 0x4008005, 0x8000, 1},
        {HostKind::premiere, 33554464, 5120, 0x4008025, 0x8400, 7},
        {HostKind::premiere, 0x2000000, 0, 0x4008005, 0x8000, 3},
        {HostKind::premiere, 0, 0x1000, 0x4008005, 0x8000, 5},
    };
    for (const auto& row : kCases) {
        HostSession& session = load(kNoControls, row.kind == HostKind::premiere ? Premiere() : AfterEffects(),
                                    Config("<AGEP_ID>TestId</AGEP_ID><FLAGS>" + std::to_string(row.flags) +
                                           "</FLAGS><FLAGS2>" + std::to_string(row.flags2) + "</FLAGS2>"));
        const host::Answer answer = session.globalSetup();
        EXPECT_EQ(answer.error, 0);
        EXPECT_EQ(static_cast<std::uint32_t>(answer.out.out_flags), row.outFlags);
        EXPECT_EQ(static_cast<std::uint32_t>(answer.out.out_flags2), row.outFlags2);
        std::vector<PrPixelFormat> formats;
        int bit = 1;
        for (const auto* pair : {&kBytes, &kWords, &kFloats}) {
            if (row.formats & bit) formats.insert(formats.end(), std::begin(*pair), std::end(*pair));
            bit *= 2;
        }
        EXPECT_EQ(session.records().pixelFormats, formats);
        const bool isPremiere = row.kind == HostKind::premiere;
        EXPECT_EQ(session.records().count(Callback::clearPixelFormats), isPremiere ? 1 : 0);
        EXPECT_EQ(session.records().aegpNames, std::vector<std::string>(isPremiere ? 0 : 1, "TestId"));
    }
}

TEST_F(Setup, LeavesAllUnwrittenWhenTheEngineDoesNotStart) {
    HostSession& session = load(kNoControls, {}, Config("<FLAGS>1<FLAGS>"));
    const host::Answer answer = session.globalSetup();
    EXPECT_EQ(answer.error, 515);
    EXPECT_EQ(answer.out.my_version | static_cast<A_u_long>(answer.out.out_flags | answer.out.out_flags2), 0u);
    EXPECT_EQ(session.handles().aliveCount(), 0u);
    // The lock that TearDown asks for needs an engine.
    start(kNoControls);
}

TEST_F(Setup, AboutEndsInTwoLineFeedsWithinTheHostsField) {
    const std::string fits(253, 'x');
    const struct {
        std::string about, shown;
    } kCases[] = {{"", "\n\n"}, {"50%s off", "50%s off\n\n"}, {fits, fits + "\n\n"}, {fits + "yz", fits + "\n\n"}};
    for (const auto& [about, shown] : kCases) {
        HostSession& session = load(kNoControls, {}, Config("<ABOUT>" + about + "</ABOUT>"));
        EXPECT_EQ(session.globalSetup().error, 0);
        const host::Answer answer = session.about();
        EXPECT_EQ(answer.error, 0);
        EXPECT_EQ(answer.out.return_msg, shown);
        EXPECT_EQ(answer.out.out_flags, 0);
    }
    HostSession& session = start(kNoControls, Premiere());
    session.hooks().before = [](PF_Cmd, PF_InData&, PF_OutData& out) { out.return_msg[0] = '!'; };
    EXPECT_STREQ(session.about().out.return_msg, "!");
}

TEST_F(Setup, EngineOutlivesTheSetdown) {
    HostSession& session = start(CopyScript(true), {}, kCopyFiles);
    HostInstance& instance = session.apply();
    EXPECT_EQ(session.globalSetdown().error, 0);
    const auto input = Picture(session);
    EXPECT_EQ(session.renderFrame(instance, {input}).output->tightBytes(), input->tightBytes());
    // A second setup reads the script anew.
    HostSession& other = start("function setup() { QL_initParam('p', 1, 'P'); } function draw() {}");
    EXPECT_THAT(other.parameters(), SizeIs(1));
}

}  // namespace
}  // namespace quillon::test
