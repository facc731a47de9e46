#include "ToolTest.h"

// What the tool says of faults in an effect: the texts are compared in full.

namespace quillon::test {

namespace {

const std::string kSetup = "var copy;\nfunction setup() { copy = QL_initShader('copy'); }\n";
const std::string kDraw =
    "function draw() {\n"
    "  QL_setShaderParamVal(copy, 'sInput0', QL_getSequenceTexture());\n"
    "  QL_renderShader(copy, QL_getSequenceRT(), true);\n"
    "}\n";
const std::string kGood = kSetup + kDraw;

// The words of a shader compiler, and the largest extent, are those of Mesa's software renderer.
const char* const kSoftwareRenderer = "LIBGL_ALWAYS_SOFTWARE=1";

struct FaultCase {
    const char* name;
    std::string script;
    std::string fragment;
    std::string words;
    std::string config = kConfig;
};

const FaultCase kCases[] = {
    {"config_with_a_broken_tag_after_changed_text", kGood, kCopyFragment,
     "fx/config.xml:3: error: not XML as effects need it: expected > [config]\n",
     "<A>&lt;&lt;</A>\n\n<B /C>\n<D></D>\n"},
    {"config_as_utf16", kGood, kCopyFragment,
     "fx/config.xml:1:1: error: byte 0xFF is not UTF-8 text; save the file as UTF-8 [config]\n",
     std::string("\xFF\xFE<\0A\0>\0", 8)},
    {"byte_that_is_not_utf8", "// ok: \xC3\xA9\nvar a = '\xC3\xA9\xE9';\n" + kGood, kCopyFragment,
     "fx/fx.js:2:11: error: byte 0xE9 is not UTF-8 text; save the file as UTF-8 [script]\n"},
    {"zero_byte", "var a;" + std::string(1, '\0') + kGood, kCopyFragment,
     "fx/fx.js:1:7: error: byte 0x00 ends the text here; save the file as UTF-8 [script]\n"},
    {"script_that_ends_its_host", "function setup() {\n  QL_release(-1);\n}\n" + kDraw, kCopyFragment,
     "fx/fx.js:2: error: setup: an id that names no kind of entity was released, which ends a host's process; give "
     "it an id that the script has made [script]\n"},
    {"lookup_that_the_driver_lacks", kGood,
     "uniform sampler2D sInput0;\nvoid main() {\n  gl_FragColor = texture2DLod(sInput0, gl_TexCoord[0].st, 0.0);\n}\n",
     "fx/copy.frag:3:18: error: this graphics driver has no texture2DLod in fragment shaders; use texture2D "
     "[shader]\n"},
    {"shader_that_is_missing", "function setup() { QL_initShader('sub/none'); }\n" + kDraw, kCopyFragment,
     "fx/none.frag: error: no such file; QL_initShader(\"sub/none\") needs it, or a text [shader]\n"},
    {"newer_language", "let a = 1;\n" + kGood, kCopyFragment,
     "fx/fx.js:1: error: SyntaxError: unterminated statement; the script language is ECMAScript 5: var and function, "
     "no let, =>, class or `text` [script]\n"},
    {"bracket_that_is_not_closed", kGood + "function f() {\n", kCopyFragment,
     "fx/fx.js: error: SyntaxError: parse error at the end of the file [script]\n"},
    {"error_in_a_function_that_draw_calls",
     kSetup + "function part() {\n  null.b;\n}\nfunction draw() {\n  part();\n}\n", kCopyFragment,
     "fx/fx.js:4: error: draw: TypeError: cannot read property 'b' of null, in part() "
     "[script]\n"},
    {"all_errors_of_a_frame", kSetup + "function preRender(w, h) { null.a; }\nfunction draw() {\n  b();\n}\n",
     kCopyFragment,
     "fx/fx.js:3: error: preRender: TypeError: cannot read property 'a' of null [script]\n"
     "fx/fx.js:5:3: error: nothing declares b; declare it with var, or look for a typing error [script]\n"},
    {"no_draw", kSetup, kCopyFragment, "fx/fx.js: error: no draw(); every effect needs one [script]\n"},
    {"entry_point_that_is_only_named", kGood + "// no preRender here\n", kCopyFragment,
     "fx/fx.js: error: no preRender(), and no default, because the file mentions its name; define it, or remove the "
     "mention [script]\n"},
    {"output_beyond_the_driver", kGood + "function preRender() { QL_setOutputExtent(-1000000000, -1); }\n",
     kCopyFragment,
     "fx/fx.js: error: preRender: asks for an output of 2147483647x-1 pixels; the graphics driver takes 1 to 16384 in "
     "each "
     "direction [render]\n"},
    {"frame_without_a_target", kSetup + "function draw() { QL_release(QL_getSequenceRT()); }\n", kCopyFragment,
     "fx: error: the frame of 1x1 at 8 bits was not rendered: the script released its target, or the graphics driver "
     "gave no pixels; look at draw(), or render it smaller [render]\n"},
    {"empty_shader_file", kGood, "", "fx/copy.frag: error: the file is empty [shader]\n"},
    {"shader_line_after_added_lines", kGood,
     "uniform sampler2D sInput0;\nvoid main() {\n  vec4 c = texture2D(sInput0, gl_TexCoord[0].st);\n"
     "  gl_FragColor = b;\n}\n",
     "fx/copy.frag:4:18: error: `b' undeclared [shader]\n"},
    {"second_main_in_a_line_nobody_wrote", kGood, "// main (here)\nvoid main() {}\n",
     "fx/copy.frag:1:4: error: Quillon takes this word for the program's function; write it in another way, such as "
     "'main', where a bracket follows it in a comment [shader]\n"},
    {"shader_text_in_the_script", "function setup() {\n  QL_initShader('x', 'void main() { y; }');\n}\n" + kDraw,
     kCopyFragment, "fx/fx.js: error: shader \"x\": `y' undeclared [shader]\n"},
};

using Faults = ToolTest;

TEST_F(Faults, AreReportedWithTheAuthorsOwnLine) {
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3});
    for (const FaultCase& row : kCases) {
        SCOPED_TRACE(row.name);
        addEffect("fx", {{"fx.js", row.script}, {"copy.frag", row.fragment}, {"config.xml", row.config}});
        const ToolRun result = run("render fx -i in.argb --size 1x1 --depth 8 -o out.png", kSoftwareRenderer);
        EXPECT_EQ(result.err, row.words);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(list(), (std::vector<std::string>{"fx", "in.argb"}));
    }
}

TEST_F(Faults, NameFilesThatAreMissingOrDoNotFit) {
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3});
    const std::string render = " -i in.argb --size 1x1 --depth 8 -o out.png";
    EXPECT_EQ(
        run("render nowhere" + render).err,
        "quillon: error: nowhere: no such effect; give the folder that holds its fx.js and config.xml, or a packed "
        "module\n");
    std::filesystem::create_directory(pathOf("fx"));
    EXPECT_EQ(run("render ./fx/" + render).err,
              "./fx/config.xml: error: no such file; every effect needs one [config]\n"
              "./fx/fx.js: error: no such file; every effect needs one [package]\n");
    addEffect("fx", {{"FX.js", "var a;"}});
    EXPECT_EQ(run("render fx" + render).err, "fx/FX.js: error: no setup(); every effect needs one [script]\n");
    std::filesystem::create_directory(pathOf("fx/more"));
    const ToolRun result = run("render fx" + render);
    EXPECT_EQ(result.err.substr(0, result.err.find(';')), "fx/more: error: a folder");
    EXPECT_EQ(result.status, 1);
}

#if !defined(_WIN32)
TEST_F(Faults, NameAMissingOpenGL) {
    addCopyEffect();
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3});
    const ToolRun result = run("render copy -i in.argb --size 1x1 --depth 8 -o out.png", "LIBGL_DRIVERS_PATH=none");
    EXPECT_EQ(result.err.rfind("quillon: error: no OpenGL", 0), 0u) << result.err;
    EXPECT_EQ(result.status, 1);
    EXPECT_FALSE(exists("out.png"));
}
#endif

// A module's own script has no console; what is heard is its rehearsal.
TEST_F(Faults, AreNotWhatAScriptPrints) {
    addEffect("fx", {{"fx.js", kSetup + "console.log('a\\nb', 1.5, [1, {a: null}], undefined, '\\ud83d\\ude00');\n" +
                                   "function draw() {\n  print(typeof console, QL_getTime());\n" +
                                   kDraw.substr(kDraw.find('{') + 1)},
                     {"copy.frag", kCopyFragment}});
    ASSERT_EQ(run("pack fx -o " + Module("fx")).status, 0);
    writeSamples<std::uint8_t>("in.argb", {255, 1, 2, 3});
    const std::string arguments = " -i in.argb --size 1x1 --depth 8 --fps 10 --frames 0-1 -o out-####.argb";
    for (const std::string& effect : {std::string("fx"), Module("fx")}) {
        const std::string place = effect + "/fx.js:";
        const std::string start = place + "3: note: a b 1.5 [1,{\"a\":null}] undefined \xF0\x9F\x98\x80\n";
        const ToolRun result = run("render " + effect + arguments);
        EXPECT_EQ(result.err, start + place + "5: note: object 0\n" + place + "5: note: object 0.1\n");
        EXPECT_EQ(result.status, 0);
        const ToolRun parts = run("render " + effect + arguments + " -j 2");
        EXPECT_EQ(parts.err.find(start), parts.err.rfind(start)) << parts.err;
        EXPECT_NE(parts.err.find("note: object 0.1\n"), std::string::npos) << parts.err;
    }
}

}  // namespace

}  // namespace quillon::test
