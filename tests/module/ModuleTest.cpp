// The module as a host gets it: a file that is loaded by its path.

#include <gmock/gmock.h>

#include "host/HostSession.h"
#include "packer/ModuleWriter.h"
#include "packer/WholeFile.h"
#include "support/BuiltFiles.h"
#include "support/EngineTest.h"
#include "support/Pixels.h"

namespace quillon::test {
namespace {

using host::HostInstance;
using host::HostSession;
using testing::IsEmpty;

class Module : public ::testing::Test {
protected:
    // Each module has another file name, since the loader gives the same file out only once.
    host::EffectModule pack(std::span<const std::byte> package) {
        const std::filesystem::path path = folder.path() / ("effect" + std::to_string(++count) + ".module");
        WriteModule(path, TemplateModule(), package);
        return host::EffectModule(path);
    }
    host::EffectModule pack(const std::string& script, const Files& more = {}) {
        Files files = more;
        files.emplace_back("fx.js", script);
        files.emplace_back("config.xml", kConfig);
        return pack(ScrambledPackage(files));
    }
    static Bytes Render(HostInstance& instance, const Bytes& input) {
        auto world = instance.session.newWorld(5, 3, 8);
        world->write(input);
        const host::FrameResult frame = instance.session.renderFrame(instance, {world});
        EXPECT_EQ(frame.error(), 0);
        EXPECT_THAT(instance.session.violations(), IsEmpty());
        return frame.output ? frame.output->tightBytes() : Bytes();
    }

    TemporaryFolder folder;
    int count = 0;
};

TEST_F(Module, TwoEffectsInOneProcessShareNothing) {
    const char* const kUpside = "var turns = 0; function preRender() { ++turns; }";
    const Files files{{"copy.frag", kCopyFragment}};
    HostSession first(pack(CopyScript(true) + kUpside, files));
    HostSession second(pack("function before() { QL_initParam('x', 3, 'X'); }" + CopyScript(false) +
                                "var own = setup; setup = function () { before(); own(); };",
                            files));
    first.start();
    second.start();
    EXPECT_THAT(first.parameters(), IsEmpty());
    EXPECT_EQ(second.parameters().size(), 1u);
    HostInstance& a = first.apply();
    HostInstance& b = second.apply();
    const Bytes input = DistinctPicture(5, 3, 8);
    for (int turn = 0; turn < 3; ++turn) {
        EXPECT_EQ(Render(a, input), input);
        EXPECT_EQ(Render(b, input), ReversedRows(input, 3));
    }
    // The end of one instance is nothing to the other module.
    first.remove(a);
    EXPECT_EQ(Render(b, input), ReversedRows(input, 3));
    second.remove(b);
}

#ifdef NDEBUG  // other builds keep their symbols for debuggers
TEST_F(Module, LeavesOutTheTableOfItsSymbols) {
    const std::vector<std::byte> file = ReadWholeFile(TemplateModule());
    const std::string_view text(reinterpret_cast<const char*>(file.data()), file.size());
    EXPECT_NE(text.find("EntryPointFunc"), text.npos);
    EXPECT_EQ(text.find("duk_push_string"), text.npos);
}
#endif

using ModuleDeathTest = Module;

TEST_F(ModuleDeathTest, WithoutAPackageTheProcessEndsAtTheStart) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const host::EffectModule module{TemplateModule()};
    EXPECT_DEATH(HostSession(module).globalSetup(), "");
}

}  // namespace
}  // namespace quillon::test
