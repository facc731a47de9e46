// What the tool says of plug-ins: when it packs them, and about those that are packed.

#include <gmock/gmock.h>

#include "ToolTest.h"
#include "frei0r/Listing.h"

namespace quillon::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

using Pack = ToolTest;

TEST_F(Pack, WarnsOfWhatPluginsCannotCarryAndListsTheRest) {
    const std::string layers =
        "QL_initParam('map', QL_Type.LAYER, 'Map'); QL_initParam('more', QL_Type.LAYER, 'More');";
    const std::string controls =
        "QL_initParam('t', QL_Type.PATH, 'File'); QL_initParam('a', QL_Type.FLOAT, 'a=b'); QL_initParam('a2', "
        "QL_Type.FLOAT, 'a:b'); QL_initParam('pair', QL_Type.POINT, 'Place');";
    const auto script = [](const std::string& body) { return "function setup() {" + body + "} function draw() {}"; };
    const struct {
        const char* name;
        std::string script, config;
        std::vector<const char*> warnings;
        frei0r::PluginType type;
        std::vector<std::string> controls;
    } kRows[] = {
        {"layers",
         script(layers),
         "",
         {"more \"More\": frei0r has one layer beside the input"},
         frei0r::PluginType::mixer2,
         {}},
        {"source",
         script(layers),
         "<GENERATOR>1</GENERATOR>",
         {"map \"Map\": a generator has no inputs"},
         frei0r::PluginType::source,
         {}},
        {"deep",
         script(""),
         "<FLAGS>33554464</FLAGS>",
         {":4: warning: frei0r has 8 bits per channel"},
         frei0r::PluginType::filter,
         {}},
        {"kinds",
         script(controls),
         "",
         {"t \"File\": frei0r has no such control"},
         frei0r::PluginType::filter,
         {"a b", "a b 2", "Place", "Place depth"}},
        {"larger",
         script("") + "\nfunction preRender(w, h) { QL_setOutputExtent(2 * w, h); }",
         "",
         {"larger/fx.js:2: warning: frei0r frames keep their size"},
         frei0r::PluginType::filter,
         {}},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.name);
        addEffect(row.name,
                  {{"fx.js", row.script},
                   {"config.xml",
                    "<MAJOR_VERSION>1</MAJOR_VERSION>\n<FXNAME>Fx</FXNAME>\n<ABOUT>Fx</ABOUT>\n" + row.config}});
        const ToolRun packed = run(std::string("pack ") + row.name + " -o " + row.name + ".so --for frei0r");
        EXPECT_EQ(packed.status, 0);
        for (const char* words : row.warnings) EXPECT_THAT(packed.err, HasSubstr(words));
        const auto listing = frei0r::ReadListingOf(pathOf(std::string(row.name) + ".so"));
        ASSERT_TRUE(listing);
        EXPECT_EQ(listing->type, row.type);
        std::vector<std::string> names;
        for (const frei0r::ListedControl& control : listing->controls) names.push_back(control.name);
        EXPECT_EQ(names, row.controls);
    }
    EXPECT_EQ(run("pack layers -o two-words.so --for frei0r").status, 2);
    EXPECT_EQ(run("pack layers -o plugin.aex --for frei0r").status, 2);
    addEffect("broken", {{"fx.js", "function setup() { nothing(); }"}});
    EXPECT_EQ(run("pack broken -o broken.so --for frei0r").status, 1);
    EXPECT_FALSE(exists("broken.so"));
}

TEST_F(Pack, InfoReadsFoldersModulesAndPlugins) {
    addEffect("fx", {{"fx.js",
                      "var s, p; function setup() { p = QL_initParam('p', QL_Type.FLOAT, 'Power');"
                      " s = QL_initShader('s'); }\n"
                      "function draw() { QL_setShaderParam(s, p); QL_setShaderParamVal(s, 'own', 1);"
                      " QL_renderShader(s, QL_getSequenceRT(), true); }"},
                     {"s.frag",
                      "uniform float p, own, unfed; uniform sampler2D picture;\n"
                      "void main() { gl_FragColor = p * own * unfed * texture2D(picture, vec2(0.5)); }"}});
    ASSERT_EQ(run("pack fx -o effect.so").status, 0);
    ASSERT_EQ(run("pack fx -o plugin.so --for frei0r").status, 0);
    for (const auto& [file, kind] : {std::pair("fx", "folder"), std::pair("effect.so", "effect module"),
                                     std::pair("plugin.so", "frei0r plug-in")}) {
        const ToolRun info = run(std::string("info ") + file);
        EXPECT_EQ(info.status, 0) << info.err;
        EXPECT_THAT(info.out, HasSubstr("kind: " + std::string(kind) + "\n"));
        for (const char* words :
             {"uniform p, kind FLOAT, label Power\n", "name s, file s.frag\n", "name p, type float, fed_by control p\n",
              "name own, type float, fed_by script\n", "name unfed, type float, fed_by nothing\n",
              "name picture, type sampler2D, fed_by nothing\n", "width 256, height 144, bits 8\n"})
            EXPECT_THAT(info.out, HasSubstr(words));
    }
    EXPECT_THAT(run("info plugin.so").out, HasSubstr("template: this tool's\n"));
    EXPECT_THAT(run("info plugin.so").out, HasSubstr("name Power, meaning 0 is -100, 1 is 100"));
    EXPECT_THAT(run("info fx --json").out, HasSubstr("\"fed_by\": \"control p\""));
    EXPECT_THAT(run("info plugin.so --rewritten s.frag").out, HasSubstr("repl_texture2D(picture, vec2(0.5))"));
    EXPECT_EQ(run("info fx --rewritten t.frag").status, 2);

    // What the files say is printed although the script fails.
    addEffect("faulty", {{"fx.js", "function setup() { nothing(); }"}});
    const ToolRun faulty = run("info faulty");
    EXPECT_EQ(faulty.status, 1);
    EXPECT_THAT(faulty.err, HasSubstr("faulty/fx.js:1:20: error: "));
    EXPECT_THAT(faulty.out, HasSubstr("kind: folder\n"));
    EXPECT_THAT(faulty.out, Not(HasSubstr("shaders")));

    const std::string whole = readFile("plugin.so");
    for (const std::size_t bytes : {std::size_t{0}, std::size_t{100}, whole.size() - 1, whole.size() - 20}) {
        writeFile("cut.so", whole.substr(0, bytes));
        EXPECT_EQ(run("info cut.so").status, 1) << bytes;
    }
    for (const char* command : {"params plugin.so", "check plugin.so"}) {
        const ToolRun refused = run(command);
        EXPECT_EQ(refused.status, 1) << command;
        EXPECT_THAT(refused.err, HasSubstr("is a frei0r plug-in, which ffmpeg, melt and other video tools load"));
    }
}

}  // namespace
}  // namespace quillon::test
