#include <gmock/gmock.h>

#include <filesystem>

#include "ToolTest.h"
#include "packer/Archive.h"
#include "packer/ModuleWriter.h"
#include "packer/PackageReader.h"
#include "packer/PiPL.h"
#include "packer/WholeFile.h"

// Modules: what pack makes of a folder, and what the other commands make of the module.

namespace quillon::test {

namespace {

using Pack = ToolTest;

TEST_F(Pack, MakesModulesThatServeAsTheirFolderDoes) {
    addCopyEffect();
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3, 128, 200, 100, 50});
    const std::string one = Module("one"), two = Module("two");
    std::size_t bytes = 0;
    for (const char* name : {"config.xml", "copy.frag", "fx.js"}) bytes += readFile(std::string("copy/") + name).size();
    const ToolRun packed = run("pack copy -o " + one);
    EXPECT_EQ(packed.out, one + "\n");
    EXPECT_EQ(packed.err, "quillon: 3 files, " + std::to_string(bytes) + " bytes\n");
    EXPECT_EQ(packed.status, 0);
    EXPECT_THAT(run("pack ./copy/ --list -o " + two).out,
                testing::ContainsRegex(two + "\n +\\w+  config.xml\n +\\w+  copy.frag\n +\\w+  fx.js\n"));
    EXPECT_EQ(readFile(one), readFile(two));
    for (const std::string& effect : {one, std::string("copy")}) {
        ASSERT_EQ(run("render " + effect + " -i in.argb --size 2x1 --depth 8 -o out.argb").err, "");
        EXPECT_EQ(readFile("out.argb"), readFile("in.argb")) << effect;
        std::filesystem::remove(pathOf("out.argb"));
    }
}

TEST_F(Pack, TakesScriptsAndShadersAsTheyAreAndRenderNamesTheModule) {
    const std::string fx = Module("fx"), pack = "pack --no-check fx -o " + fx;
    addEffect("fx", {{"fx.js", "var a = \xE9;"}, {"a.frag", "nonsense"}});
    ASSERT_EQ(run(pack).status, 0);
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3});
    const std::string render = "render " + fx + " -i in.argb --size 1x1 --depth 8 -o out.png";
    EXPECT_EQ(run(render).err,
              fx + "/fx.js:1:9: error: byte 0xE9 is not UTF-8 text; save the file as UTF-8 [script]\n");
    addEffect("fx", {{"fx.js", "var a;\nfunction setup() { QL_initShader('a'); }\nfunction draw() {}\n"},
                     {"a.frag", "void main() {\n  x;\n}"}});
    ASSERT_EQ(run(pack).status, 0);
    EXPECT_EQ(run(render, "LIBGL_ALWAYS_SOFTWARE=1").err, fx + "/a.frag:2:3: error: `x' undeclared [shader]\n");
}

TEST_F(Pack, NamesOutsideAsciiArePassedThrough) {
    const std::string name = "\xC3\xA9 \xE6\xBC\xA2", packed = Module(name);
    addEffect(name, {{"fx.js", CopyScript(/*flip=*/true)}, {"copy.frag", kCopyFragment}});
    writeSamples<std::uint8_t>(name + ".argb", {255, 1, 2, 3});
    const std::string input = "\" -i \"" + name + ".argb\" --size 1x1 --depth 8 -o \"" + name;
    EXPECT_EQ(run("pack \"" + name + "\" -o \"" + packed + "\"").out, packed + "\n");
    EXPECT_EQ(run("render \"" + name + input + "1.argb\"").out, name + "1.argb\n");
    const ToolRun second = run("render \"" + packed + input + "##.argb\" --frames 2-2");
    EXPECT_EQ(second.out, name + "02.argb\n") << second.status << second.err;
    EXPECT_EQ(readFile(name + "1.argb"), readFile(name + ".argb"));
    EXPECT_EQ(readFile(name + "02.argb"), readFile(name + ".argb"));
    EXPECT_THAT(list(), testing::UnorderedElementsAre(name, packed, name + ".argb", name + "1.argb", name + "02.argb"));
    writeFile(name + "/" + name + ".frag", "");
    addEffect(name, {{"fx.js", "function setup() { QL_initShader('" + name + "'); } function draw() {}"}});
    EXPECT_EQ(run("render \"" + name + input + "1.argb\"").err.rfind(name + "/" + name + ".frag: error: ", 0), 0u);
}

TEST_F(Pack, RefusesWhatCannotBecomeAModuleOrWouldBecomePartOfOne) {
    struct Row {
        Files files;
        const char* arguments;
        const char* words;
        int status = 1;
    };
    const Row kRows[] = {
#if !defined(_WIN32)  // whose folders hold no two such
        {{{"fx.js", ""}, {"FX.js", ""}}, "pack fx -o a.so", "fx: error: 'FX.js' and 'fx.js' are the same name"},
#endif
        {{{"fx.js", ""}}, "pack fx -o a.dll", "quillon: error: a.dll: modules end in .so for Linux and in .aex", 2},
        {{{"fx.js", ""}}, "pack fx -o fx/a.so", "quillon: error: fx/a.so: is in the effect's folder", 2},
        {{{"fx.js", ""}},
         "render fx -i a.png -o fx/b##.png --frames 1-2",
         "quillon: error: fx/b##.png: is in the effect's",
         2},
        {{{"fx.js", ""}}, "pack fx/fx.js -o a.so", "quillon: error: fx/fx.js: is not a folder"},
    };
    for (const Row& row : kRows) {
        std::filesystem::remove_all(pathOf("fx"));
        addEffect("fx", row.files);
        const ToolRun result = run(row.arguments);
        EXPECT_EQ(result.err.rfind(row.words, 0), 0u) << row.arguments << "\n" << result.err;
        EXPECT_EQ(result.out, "") << row.arguments;
        EXPECT_EQ(result.status, row.status) << row.arguments;
        EXPECT_EQ(list(), (std::vector<std::string>{"fx"}));
    }
}

TEST_F(Pack, WarnsOfWhatHostsWillNotSeeAsItIsMeant) {
    const std::string versions =
        "<MAJOR_VERSION>1</MAJOR_VERSION><MINOR_VERSION>2</MINOR_VERSION><BUILD_VERSION>0</BUILD_VERSION>"
        "<STAGE_VERSION>3</STAGE_VERSION>";
    const std::string texts = "<ABOUT/><FXNAME/><AGEP_ID/>";
    const std::string flags = "<FLAGS>33554464</FLAGS><FLAGS2>5120</FLAGS2>";
    const std::pair<std::string, std::string> kRows[] = {
        {versions + texts + flags, ""},
        {"<effect>\n" + versions + texts + flags + "</effect>",
         "fx/config.xml:1:2: warning: the keys are inside <effect>, where they are not found; take that element away "
         "[config]\n"},
        {versions + flags,
         "fx/config.xml: warning: no ABOUT, FXNAME, AGEP_ID; numbers that are missing are 0, texts empty [config]\n"},
        {versions + texts + "\n\n<FLAGS>0x2000020</FLAGS> <FLAGS2> 1024 </FLAGS2>",
         "fx/config.xml:3:2: warning: FLAGS: \"0x2000020\" is not a decimal number; it is read as 0; write decimal "
         "digits "
         "only [config]\n"
         "fx/config.xml:3:2: warning: FLAGS: hosts go by 0, but the engine can do what 33554464 says "
         "[config]\n"
         "fx/config.xml:3:27: warning: FLAGS2: hosts go by 1024, but the engine can do what 5120 says "
         "[config]\n"},
        {"<MINOR_VERSION>20</MINOR_VERSION>\n" + versions + texts + flags,
         "fx/config.xml:2:34: warning: MINOR_VERSION is here again; the first one counts [config]\n"
         "fx/config.xml:1:2: warning: MINOR_VERSION: hosts see 0 to 15, and 20 as 4; write a number in that range "
         "[config]\n"},
        {versions + texts + "<FLAGS>4328521760</FLAGS><FLAGS2>5120</FLAGS2>",
         "fx/config.xml:1:157: warning: FLAGS: \"4328521760\" does not fit into 32 bits; it is read as 2147483647; "
         "write "
         "a number in that range [config]\n"
         "fx/config.xml:1:157: warning: FLAGS: hosts go by 2147483647, but the engine can do what 33554464 says "
         "[config]\n"},
    };
    for (const auto& [config, words] : kRows) {
        addEffect("fx", {{"fx.js", ""}, {"config.xml", config}});
        const ToolRun result = run("pack --no-check fx -o fx.so");
        EXPECT_EQ(result.err.substr(0, result.err.find("quillon: 2 files")), words);
        EXPECT_EQ(result.status, 0) << config;
        EXPECT_EQ(result.out, "fx.so\n");
    }
}

TEST_F(Pack, WarnsOfFilesThatAreHardlyAPartOfTheEffect) {
    const std::vector<std::string> leftovers = {"#fx.js#", "Thumbs.db", "fx.js.BAK",  "fx.js~",
                                                "old.aex", "out.exr",   "out0001.PNG"};
    Files files = {{"fx.js", "var a = 'map.png', b = \"x\" + '.JPG'; // out0001"},
                   {"map.PNG", ""},
                   {"x7.jpg", ""},
                   {"a.frag", ""}};
    for (const std::string& name : leftovers) files.emplace_back(name, "");
    addEffect("fx", files);
    const ToolRun result = run("pack --no-check fx -o fx.so");
    EXPECT_EQ(result.status, 0);
    std::size_t at = 0;
    for (const std::string& name : leftovers) {
        const std::size_t found = result.err.find("fx/" + name + ": warning: ", at);
        ASSERT_NE(found, std::string::npos) << name << "\n" << result.err;
        at = found;
    }
    for (const char* name : {"map.PNG", "x7.jpg", "a.frag"})
        EXPECT_EQ(result.err.find(name), std::string::npos) << result.err;
}

// The tool finds its templates beside itself.
class PackForWindows : public ToolTest {
protected:
    PackForWindows() {
        for (const char* name : {"bin", "lib"}) std::filesystem::create_directory(pathOf(name));
        const std::string copy = pathOf("bin/" + std::filesystem::path(tool).filename().string());
        std::filesystem::copy_file(tool, copy);
        tool = copy;
        WriteWholeFile(pathOf("lib/quillon_module.aex"), ReadWholeFile(WindowsModule("plain")));
    }
};

TEST_F(PackForWindows, DescribesTheEffectFromItsConfig) {
    const std::string numbers =
        "<MAJOR_VERSION>9</MAJOR_VERSION><MINOR_VERSION>2</MINOR_VERSION><BUILD_VERSION>1</BUILD_VERSION>"
        "<STAGE_VERSION>3</STAGE_VERSION><FLAGS>33554464</FLAGS><FLAGS2>5120</FLAGS2><ABOUT/><AGEP_ID/>";
    struct Row {
        const char* texts;
        EffectIdentity described;  // its texts
        const char* words = "";
    };
    const Row kRows[] = {
        {"<FXNAME>A-b 1</FXNAME>", {"A-b 1", "Quillon", "QLVAb1"}},
        {"<FXNAME>\n  A &amp; B </FXNAME><CATEGORY>Cat</CATEGORY><MATCH_NAME>Match</MATCH_NAME>",
         {"A & B", "Cat", "Match"}},
        {"<FXNAME>\xC3\xA9</FXNAME><MATCH_NAME>e</MATCH_NAME><CATEGORY> </CATEGORY>", {"\xC3\xA9", "Quillon", "e"}},
        {"<FXNAME>\xC3\xA9</FXNAME>", {}, "fx/config.xml:1:192: error: FXNAME: has no letter"},
        {"<FXNAME>A name of thirty-one, all of it</FXNAME>",
         {"A name of thirty-one, all of it", "Quillon", "QLVAnameofthirtyoneallofit"}},
        {"<FXNAME>Anameofthirtyoneletters28letter</FXNAME>",
         {},
         "fx/config.xml:1:192: error: FXNAME: too long to make a match"},
    };
    for (const Row& row : kRows) {
        addEffect("fx", {{"fx.js", ""}, {"config.xml", numbers + row.texts}});
        const ToolRun result = run("pack fx -o fx.AEX");
        EXPECT_EQ(result.status, *row.words ? 1 : 0);
        EXPECT_EQ(result.err.find(row.words), 0u) << result.err;
        EXPECT_EQ(exists("fx.AEX"), !*row.words) << row.texts;
        if (*row.words) continue;
        EffectIdentity described = row.described;
        described.version = 1u << 26 | 1u << 19 | 2u << 15 | 3u << 9 | 1;
        described.outFlags = 0x06008025;
        described.outFlags2 = 0x1400;
        const auto description = MakePiPL(described);
        EXPECT_NE(readFile("fx.AEX").find({reinterpret_cast<const char*>(description.data()), description.size()}),
                  std::string::npos)
            << row.texts;
        std::filesystem::remove(pathOf("fx.AEX"));
    }
}

TEST_F(PackForWindows, LeavesLoadingToThatSystem) {
    addEffect("fx", {{"fx.js", ""}});
    const cli::ModuleKind& other = cli::kModuleKinds[&cli::kOwnModuleKind == cli::kModuleKinds];
    const std::string fx = std::string("fx") + other.ending;
    writeFile("lib/quillon_module.so", "a template");
    ASSERT_EQ(run("pack fx -o " + fx).status, 0);
    const ToolRun params = run("params " + fx);
    EXPECT_EQ(params.status, 1);
    EXPECT_NE(
        params.err.find(std::string("; modules for ") + other.system + " run there only; give the effect's folder"),
        std::string::npos)
        << params.err;
    std::filesystem::remove(pathOf("lib/quillon_module.so"));
    EXPECT_EQ(run("pack fx -o fx.so")
                  .err.rfind("quillon: error: " +
                                 std::filesystem::path(pathOf("lib/quillon_module.so")).make_preferred().string() +
                                 ": the template of modules for Linux",
                             0),
              0u);
}

TEST_F(Pack, DamagedAndForeignModulesAreReported) {
    addEffect("fx", {{"fx.js", ""}});
    const std::string none = Module("none"), foreign = Module("foreign");
    ASSERT_EQ(run("pack --no-check fx -o " + Module("good")).status, 0);
    writeFile(none, "no package and no module");
#if defined(_WIN32)
    WriteWholeFile(pathOf("template"), ReadWholeFile(WindowsModule("plain")));
    const char* const refusal = ": is no effect: ";
    const char* const cut = ": error: not a valid 64-bit Windows module: it is cut off";
#else
    writeFile("template", "no module");
    const char* const refusal = ": cannot be loaded as an effect: ";
    const char* const cut = ": error: carries no package";
#endif
    WriteModule(pathOf(foreign), pathOf("template"), Scramble(WriteArchive(ReadPackage(pathOf(Module("good"))))));
    for (const auto& [name, words] : {std::pair(none, none + ": error: carries no package"),
                                      std::pair(foreign, "quillon: error: " + foreign + refusal)}) {
        const ToolRun result = run("params " + name);
        EXPECT_EQ(result.err.rfind(words, 0), 0u) << result.err;
        EXPECT_EQ(result.status, 1) << name;
    }
    // As after a broken download: cut off, or with another byte, which is so far from the end.
    const std::string good = readFile(Module("good")), bad = Module("bad");
    const struct {
        const char* what;
        std::size_t length, otherByte;
        const char* words;
    } kDamages[] = {
        {"empty", 0, 0, ": error: carries no package"},
        {"half", good.size() / 2, 0, cut},
        {"cut off", good.size() - 1, 0, cut},
#if !defined(_WIN32)  // where the package is in the middle of the file
        {"trailer", good.size(), 1, ": error: carries no package"},
        {"list of files", good.size(), 15, ": error: its package is damaged; pack the effect again"},
        {"file", good.size(), 250, ": error: 'config.xml' in its package is damaged; pack the effect again"},
#endif
    };
    for (const auto& [what, length, otherByte, words] : kDamages) {
        std::string bytes = good.substr(0, length);
        if (otherByte != 0) bytes[length - otherByte] ^= 0x55;
        writeFile(bad, bytes);
        for (const char* command : {"info ", "render -i none.png -o out.png "}) {
            const ToolRun result = run(command + bad);
            EXPECT_EQ(result.status, 1) << what;
            EXPECT_EQ(result.out, "") << what;
            EXPECT_EQ(result.err.rfind(bad + words, 0), 0u) << what << ": " << result.err;
        }
    }
}

}  // namespace

}  // namespace quillon::test
