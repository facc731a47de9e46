#include "cli/check/watch/ScriptWatch.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "support/SampleTest.h"

namespace quillon::test {
namespace {

// The first two lines of each script, and what makes a frame of it.
const std::string kSetup = "var s, t, c;\nfunction setup() { s = QL_initShader('copy');\n";
const std::string kDraw =
    "QL_setShaderParamVal(s, 'sInput0', QL_getSequenceTexture());\n"
    "QL_renderShader(s, QL_getSequenceRT(), true); }\n";

struct WatchCase {
    const char* name;
    std::string setup;  // from line 3 on
    std::string draw;   // the line after `function draw() {`
    std::string findings;
};

// Texts after "rule: " are beginnings.
const WatchCase kCalls[] = {
    {"nothing_wrong", "t = QL_initRenderTarget(4, 4, 8);", "QL_release(0); QL_release(); QL_getSurfaceDim(c);", ""},
    {"ids_that_the_engine_gives_out_again",
     "QL_release(QL_surfaceToTexture(QL_initSurface(1, 1, 8))); QL_release(QL_initRenderTarget(4, 4, 8));",
     "QL_setTextureParam(QL_getSequenceTexture(), 10241, 9728);", ""},
    {"undefined_id", "", "QL_getParamValue(c);",
     "6:1 script/dead-id: QL_getParamValue: argument 1 (id) is undefined, which names nothing\n"},
    {"zero_before_the_first_frame", "QL_setTextureParam(QL_getSequenceTexture(), 10241, 9728);", "",
     "3:1 script/dead-id: QL_setTextureParam: argument 1 (id) is 0, which names nothing; ask QL_getSequenceRT() and "
     "QL_getSequenceTexture() in draw(): they give 0 before it\n"},
    {"released", "c = QL_initShader('none', 'void main() {}');",
     "t = QL_initRenderTarget(4, 4, 8); QL_release(t);\nQL_renderShader(c, t, false);",
     "7:1 script/dead-id: QL_renderShader: argument 2 (target) is a target that was released in line 6\n"},
    {"released_twice", "t = QL_initRenderTarget(4, 4, 8); QL_release(t);\nQL_release(t);", "",
     "4:1 script/dead-id: QL_release: argument 1 (id) is a target that was released in line 3\n"},
    {"name_in_place_of_a_control", "", "QL_setShaderParam(s, 'amount');",
     "6:1 script/wrong-kind: QL_setShaderParam: argument 2 (param) is the text \"amount\", not the id of a control\n"},
    {"order_of_shader_and_name", "", "QL_setShaderParamVal('sInput0', s, QL_getSequenceTexture());",
     "6:1 script/wrong-kind: QL_setShaderParamVal: argument 1 (shader) is the text \"sInput0\", not the id of a "
     "shader; "
     "the order is QL_setShaderParamVal(shader, name, value)\n"},
    {"order_of_shader_and_target", "", "QL_renderShader(QL_getSequenceRT(), s, true);",
     "6:1 script/wrong-kind: QL_renderShader: argument 1 (shader) is a target, not the id of a shader; the order is "},
    {"made_up_number", "", "\tQL_release(12);",
     "6:2 script/wrong-kind: QL_release: argument 1 (id) is 12, not an id\n"},
    {"shorthand_and_characters", "", "/* \xC3\xA9 */ Q.L.release([1]);",
     "6:9 script/wrong-kind: QL_release: argument 1 (id) is an array, not an id\n"},
    {"once_a_line", "", "for (var i = 0; i < 9; ++i) QL_release(9);",
     "6:29 script/wrong-kind: QL_release: argument 1 (id) is 9, not an id\n"},

    {"uniform_of_no_shader", "", "QL_setShaderParamVal(s, 'amuont', 1);",
     "6:1 script/unknown-uniform: QL_setShaderParamVal: shader \"copy\" has no uniform 'amuont'; take"},
    {"uniform_with_a_near_name", "t = QL_initShader('most');", "QL_setShaderParamVal(t, 'amuont', 1);",
     "6:1 script/unknown-uniform: QL_setShaderParamVal: shader \"most\" has no uniform 'amuont'; did you mean amount?"},
    {"uniform_that_the_compiler_removed", "t = QL_initShader('most');", "QL_setShaderParamVal(t, 'unused', 1);",
     "6:1 script/unknown-uniform: QL_setShaderParamVal: the compiler has removed 'unused' of shader \"most\""},
    {"uniform_of_one_of_two_shaders", "t = QL_initShader('most');",
     "[s, t].forEach(function (x) { QL_setShaderParamVal(x, 'size', [1, 1]); });", ""},
    {"forms_of_values", "t = QL_initShader('most');",
     "QL_setShaderParamVal(t, 'size', [1, 2, 3]);\nQL_setShaderParamVal(t, 'size', 1);\n"
     "QL_setShaderParamVal(t, 'amount', [1, 2]);\nQL_setShaderParamVal(t, 'amount', c);\n"
     "QL_setShaderParamVal(t, 'turn', 1);\nQL_setShaderParamVal(t, 'weights', 1);\n"
     "QL_setShaderParamVal(t, 'amount', 0 / 0);\nQL_setShaderParamVal(t, 'amount', '2');\n"
     "QL_setShaderParamVal(t, 'amount', true);",
     "6:1 script/wrong-value: QL_setShaderParamVal: 'size' of shader \"most\" takes an array of 2 numbers and is given "
     "an array of 3\n"
     "7:1 script/wrong-value: QL_setShaderParamVal: 'size' of shader \"most\" takes an array of 2 numbers and is given "
     "a number that is no array\n"
     "8:1 script/wrong-value: QL_setShaderParamVal: 'amount' of shader \"most\" takes a number and is given an array "
     "of "
     "2\n"
     "9:1 script/wrong-value: QL_setShaderParamVal: 'amount' of shader \"most\" takes a number and is given undefined\n"
     "10:1 script/wrong-value: QL_setShaderParamVal: 'turn' of shader \"most\" is a mat2, which a script cannot set\n"
     "11:1 script/wrong-value: QL_setShaderParamVal: 'weights' of shader \"most\" is an array, which a script cannot\n"
     "12:1 script/wrong-value: QL_setShaderParamVal: 'amount' of shader \"most\" takes a number and is given NaN\n"},
    {"sampler_values", "c = QL_initSurface(1, 1, 8);",
     "QL_setShaderParamVal(s, 'sInput0', 0);\nQL_setShaderParamVal(s, 'sInput0', 'in.png');\n"
     "QL_setShaderParamVal(s, 'sInput0', c);",
     "6:1 script/dead-id: QL_setShaderParamVal: 'sInput0' of shader \"copy\" is a sampler and is given 0, which\n"
     "7:1 script/wrong-value: QL_setShaderParamVal: 'sInput0' of shader \"copy\" is a sampler and is given the text "
     "\"in."
     "png\"\n"
     "8:1 script/wrong-value: QL_setShaderParamVal: 'sInput0' of shader \"copy\" is a sampler and is given a surface "
     "made in line 3\n"},
    {"color_for_a_vec3", "c = QL_initParam('tint', QL_Type.COLOR, 'Tint'); t = QL_initShader('most');",
     "QL_setShaderParam(t, c);",
     "6:1 script/uniform-type: QL_setShaderParam: 'tint' of shader \"most\" is a vec3; the control of this name is a "
     "COLOR, which feeds a vec4; declare `uniform vec4 tint;`\n"},
    {"control_after_its_shader", "t = QL_initShader('most'); c = QL_initParam('amount', QL_Type.ANGLE, 'Angle');",
     "QL_setShaderParam(t, c);",
     "6:1 script/uniform-type: QL_setShaderParam: control 'amount' is declared after shader \"most\", which takes its "
     "uniform for FLOAT"},

    {"sampler_that_nobody_sets", "t = QL_initRenderTarget(4, 4, 8);",
     "QL_renderShader(QL_initShader('copy'), t, false);",
     "6:1 script/unset-sampler: QL_renderShader: sampler 'sInput0' of shader \"copy\" was never set"},
    {"target_that_is_read", "t = QL_initRenderTarget(4, 4, 8);",
     "QL_setShaderParamVal(s, 'sInput0', t);\nQL_renderShader(s, t, false);\nQL_blitRenderTarget(t, t, true, true);",
     "7:1 script/reads-own-target: QL_renderShader: sampler 'sInput0' of shader \"copy\" reads the target\n"
     "8:1 script/reads-own-target: QL_blitRenderTarget: source and destination are one target\n"},
    {"sampler_of_a_released_target", "t = QL_initRenderTarget(4, 4, 8);",
     "c = QL_initRenderTarget(2, 2, 8); QL_setShaderParamVal(s, 'sInput0', c);\nQL_release(c);\nQL_renderShader(s, t, "
     "false);",
     "8:1 script/dead-id: QL_renderShader: sampler 'sInput0' of shader \"copy\" reads a target that was released in "
     "line 7\n"},
    {"picture_that_is_missing", "QL_initTexture('txet.png');", "",
     "3:1 package/missing-picture: QL_initTexture: the effect has no file \"txet.png\"; did you mean text.png?"},
    {"picture_that_is_none", "QL_initTexture('text.png');", "",
     "3:1 package/unreadable-picture: QL_initTexture: \"text.png\" is no picture"},
    {"targets_that_cannot_be", "QL_initRenderTarget(0, 4, 8);\nQL_initRenderTarget(4, 4, 24);", "",
     "3:1 script/not-created: QL_initRenderTarget: there is no such thing as a target of 0x4 pixels at 8 bits\n"
     "4:1 script/not-created: QL_initRenderTarget: a target of 4x4 pixels at 24 bits is asked for"},
    {"release_of_what_is_in_use", "c = QL_initParam('l', QL_Type.LAYER, 'L');",
     "if (QL_getTime() > 0) QL_release(QL_getSequenceTexture());\nif (c) QL_release(QL_getParamValue(c)); c = 0;",
     "7:8 script/release-in-use: QL_release: this is the texture of the control 'l'\n"
     "6:23 script/release-in-use: QL_release: this is the input of the frame\n"
     "8:1 script/dead-id: QL_setShaderParamVal: 'sInput0' of shader \"copy\" is a sampler and is given a texture\n"},
    {"calls_at_the_wrong_time", "", "QL_setOutputExtent(4, 4);\nQL_initParam('late', QL_Type.BOOL, 'Late');",
     "6:1 script/no-effect: QL_setOutputExtent: the output has its size already; call it in preRender()\n"
     "7:1 script/late-control: QL_initParam: the host has its list of controls already"},
};

// Controls, declared in line 3 and after it.
const WatchCase kDeclarations[] = {
    {"sound_controls",
     "function slider(name, from, to, value) { var id = QL_initParam(name, QL_Type.FLOAT, name);\n"
     "QL_setParamMinMax(id, from, to); QL_setParamValue(id, value); QL_setParamPrecision(id, 2); }\n"
     "slider('a', 0, 1, 0.5); slider('b', -1e6, 1e6, 0);\n"
     "QL_initParam('g', QL_Type.GROUP_START, 'a'); slider('d', 0, 1, 1); QL_initParam('g', QL_Type.GROUP_END, '');\n"
     "c = QL_initParam('p', QL_Type.POPUP, 'Popup'); QL_setParamChoices(c, 'A|(-|B'); QL_setParamValue(c, 3);\n"
     "QL_setParamValue(QL_initParam('t', QL_Type.COLOR, 'Tint'), [0, 0, 0, 255]);",
     "", ""},
    {"unknown_kind", "QL_initParam('a', QL_Type.SLIDER, 'A');", "",
     "3:0 script/unknown-kind: control 'a' is of no kind that hosts show"},
    {"entries",
     "c = QL_initParam('a', QL_Type.POPUP, 'A'); QL_setParamChoices(c, 'One'); QL_setParamValue(c, 1);\n"
     "c = QL_initParam('b', QL_Type.POPUP, 'B'); QL_setParamChoices(c, 'One||Two'); QL_setParamValue(c, 1);\n"
     "c = QL_initParam('d', QL_Type.POPUP, 'D'); QL_setParamChoices(c, 'One|Two');\n"
     "c = QL_initParam('e', QL_Type.POPUP, 'E'); QL_setParamChoices(c, 'One|Two'); QL_setParamValue(c, 3);",
     "",
     "3:0 script/popup-entries: control 'a' has the entries \"One\"\n"
     "4:0 script/popup-entries: control 'b' has the entries \"One||Two\"\n"
     "5:0 script/popup-value: control 'd' has 2 entries and the default 0\n"
     "6:0 script/popup-value: control 'e' has 2 entries and the default 3\n"},
    {"sliders_by_a_function",
     "function slider(name, from, to, value) { var id = QL_initParam(name, QL_Type.FLOAT, name);\n"
     "QL_setParamMinMax(id, from, to); QL_setParamValue(id, value); }\n"
     "slider('a', 10, 0, 5);\nslider('b', 0, 100, 101);\nslider('c', 0, 1, 0.5);\nslider('d', 0, undefined, 0);",
     "",
     "5:0 script/empty-range: control 'a' has the range 10 to 0\n"
     "6:0 script/default-outside-range: control 'b' has the default 101 outside of its range 0 to 100\n"
     "7:0 script/coarse-slider: control 'c' shows whole numbers only, and its range is 0 to 1\n"
     "8:0 script/empty-range: control 'd' has the range 0 to nan\n"},
    {"colors",
     "function color(name, value) { QL_setParamValue(QL_initParam(name, QL_Type.COLOR, name), value); }\n"
     "color('a', [1, 0.5, 0, 1]);\ncolor('b', [300, 0, 0, 255]);\ncolor('c', [255, 0, 0]);",
     "",
     "3:31 script/wrong-value: QL_setParamValue: control 'c' is a COLOR, which takes an array of 4 numbers\n"
     "4:0 script/color-scale: control 'a' has the default [1, 0.5, 0, 1]\n"
     "5:0 script/color-scale: control 'b' has the default [300, 0, 0, 255]\n"},
    {"names_and_labels",
     "QL_initParam('a', QL_Type.BOOL, 'A label that is much too long for hosts');\n"
     "QL_initParam('b', QL_Type.BOOL, 'A label that is much too long for any host');\n"
     "QL_initParam('a', QL_Type.BOOL, 'Other');",
     "",
     "3:0 script/long-label: the label of control 'a' has 39 bytes\n"
     "4:0 script/long-label: the label of control 'b' has 42 bytes\n"
     "4:0 script/same-label: hosts show \"A label that is much too long f\" for two controls, 'a' and 'b'\n"
     "5:0 script/same-name: two controls are named 'a'; the first one is declared in line 3\n"},
    {"groups",
     "QL_initParam('e', QL_Type.GROUP_END, '');\nQL_initParam('g', QL_Type.GROUP_START, 'G');\n"
     "QL_initParam('h', QL_Type.GROUP_START, 'H'); QL_initParam('h', QL_Type.GROUP_END, '');",
     "",
     "3:0 script/open-group: control 'e' ends a group that nothing begins\n"
     "4:0 script/open-group: the group 'g' has no end\n"},
    {"values_without_effect",
     "QL_setParamMinMax(QL_initParam('a', QL_Type.ANGLE, 'A'), 0, 90);\n"
     "QL_setParamValue(QL_initParam('g', QL_Type.PATH, 'P'), 1);",
     "",
     "3:1 script/no-effect: QL_setParamMinMax: control 'a' is an ANGLE, which has no range\n"
     "4:1 script/no-effect: QL_setParamValue: control 'g' is a PATH, which has no value\n"},
};

const Files kFiles = {
    {"copy.frag", kCopyFragment},
    {"text.png", "no picture"},
    {"most.frag",
     "uniform float amount, weights[2], unused;\nuniform vec2 size;\nuniform vec3 tint;\nuniform mat2 turn;\n"
     "void main() { gl_FragColor = vec4(turn * size * amount * weights[0] + weights[1], 0.0, 0.0) + vec4(tint, 0.0); "
     "}\n"},
};

class ScriptWatchTest : public SampleTest {
protected:
    // Runs the script's start and two frames, and gives what was found: "LINE:COLUMN RULE: TEXT; REMEDY" each.
    std::vector<std::string> findings(const std::string& script, int frames = 2) {
        cli::EffectSource source{.path = "fx", .files = {{"fx.js", Bytes(script)}}};
        for (const auto& [name, content] : kFiles) source.files.push_back({name, Bytes(content)});
        cli::ScriptWatch watch(source);
        start(script, kFiles);
        addInstance();
        std::array<std::byte, 16> input = {};  // the top row is white
        std::fill_n(input.begin(), 8, std::byte{255});
        for (int i = 0; i < frames; ++i) frame(2, 2, 8, input, i);
        std::vector<std::string> found;
        for (const cli::Diagnostic& finding : watch.take())
            found.push_back(fmt::format("{}:{} {}: {}; {}", finding.line, finding.column, finding.rule, finding.text,
                                        finding.remedy));
        EXPECT_TRUE(watch.take().empty()) << "each finding comes once";
        return found;
    }
    void expectFindings(const WatchCase& row) {
        SCOPED_TRACE(row.name);
        const auto found = findings(kSetup + row.setup + "\n}\nfunction draw() {\n" + row.draw + "\n" + kDraw);
        std::vector<std::string> expected;
        std::istringstream lines(row.findings);
        for (std::string line; std::getline(lines, line);) expected.push_back(line);
        EXPECT_EQ(found.size(), expected.size()) << fmt::format("{}", fmt::join(found, "\n"));
        for (std::size_t i = 0; i < std::min(found.size(), expected.size()); ++i)
            EXPECT_TRUE(found[i].starts_with(expected[i])) << found[i] << "\ninstead of\n" << expected[i];
    }

private:
    static std::vector<std::byte> Bytes(const std::string& text) {
        const auto* const first = reinterpret_cast<const std::byte*>(text.data());
        return {first, first + text.size()};
    }
};

TEST_F(ScriptWatchTest, FindsCallsThatDoNothing) {
    for (const WatchCase& row : kCalls) expectFindings(row);
}

TEST_F(ScriptWatchTest, FindsDeclarationsThatHostsBend) {
    for (const WatchCase& row : kDeclarations) expectFindings(row);
}

TEST_F(ScriptWatchTest, FindsFramesWithoutOutput) {
    for (const auto& [draw, text] :
         {std::pair{"", "2:0 script/no-output: draw: runs no pass"},
          {"QL_renderShader(s, t, false);", "2:0 script/no-output: draw: no pass draws into"}}) {
        const auto found =
            findings(std::string("var s, t; function setup() { s = QL_initShader('none', 'void main() {}'); "
                                 "t = QL_initRenderTarget(4, 4, 8); }\nfunction draw() { ") +
                     draw + " }");
        ASSERT_EQ(found.size(), 1u) << draw;
        EXPECT_TRUE(found[0].starts_with(text)) << found[0];
    }
    EXPECT_TRUE(findings("function setup() {} function draw() { x; }").empty()) << "a script error is said elsewhere";
}

// A shader that turns the picture itself may need an even number of flips, or mean it.
TEST_F(ScriptWatchTest, FindsAPictureThatIsUpsideDown) {
    const std::string kTurned =
        "'uniform sampler2D p; void main() { gl_FragColor = texture2D(p, vec2(gl_TexCoord[0].s, 1.0 - "
        "gl_TexCoord[0].t)); }'";
    const struct {
        std::string shader;
        const char* passes;
        bool isFound;
    } kRows[] = {
        {"", "QL_renderShader(s, QL_getSequenceRT(), true);", false},
        {"", "QL_renderShader(s, QL_getSequenceRT());", true},
        {"", "QL_renderShader(s, t, true); QL_blitRenderTarget(t, QL_getSequenceRT(), true);", true},
        {"", "QL_renderShader(s, t, true); QL_blitRenderTarget(t, QL_getSequenceRT(), false);", false},
        {kTurned, "QL_renderShader(s, QL_getSequenceRT(), false);", false},
        {kTurned, "QL_renderShader(s, QL_getSequenceRT(), true);", false},
    };
    for (const auto& [shader, passes, isFound] : kRows) {
        const auto found = findings("var s, t; function setup() { s = QL_initShader('x', " +
                                    (shader.empty() ? "'uniform sampler2D p; void main() { gl_FragColor = texture2D(p, "
                                                      "gl_TexCoord[0].st); }'"
                                                    : shader) +
                                    "); t = QL_initRenderTarget(2, 2, 8); }\nfunction draw() { "
                                    "QL_setShaderParamVal(s, 'p', QL_getSequenceTexture());\n" +
                                    passes + " }");
        EXPECT_EQ(found.size(), isFound ? 1u : 0u) << shader << passes;
        for (const std::string& line : found)
            EXPECT_NE(line.find(" script/upside-down: draw: "), std::string::npos) << line;
    }
}

TEST_F(ScriptWatchTest, FindsWhatPilesUpAndNotWhatIsKept) {
    const std::string kRest =
        "QL_blitRenderTarget(QL_initRenderTargetOnce(), QL_getSequenceRT(), true, true); }\n"
        "var once; function QL_initRenderTargetOnce() { return once = once || QL_initRenderTarget(2, 2, 8); }"
        "function setup() {}";
    const auto found = findings("function draw() {\nQL_textureToSurface(QL_getSequenceTexture());\n" + kRest, 60);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_TRUE(found[0].starts_with("2:0 script/growth: each frame makes something here that is never released: 60"))
        << found[0];
    EXPECT_TRUE(findings("var kept = []; function draw() {\nkept.push(QL_textureToSurface(QL_getSequenceTexture()));\n"
                         "if (kept.length > 20) QL_release(kept.shift());\n" +
                             kRest,
                         60)
                    .empty());
}

TEST_F(ScriptWatchTest, FindsNothingInTheSamples) {
    Picture picture{.width = 24, .height = 16, .samples = std::vector<float>(24 * 16 * 4, 0.5f)};
    for (const auto& folder : std::filesystem::directory_iterator(SourceFolder() / "effects")) {
        if (!folder.is_directory()) continue;
        SCOPED_TRACE(folder.path().filename().string());
        const cli::EffectSource source = cli::ReadEffectSource(folder.path());
        cli::ScriptWatch watch(source);
        load(folder.path().filename().string());
        for (const std::uint32_t depth : {8u, 16u, 32u})
            for (int instance = 0; instance < 2; ++instance) {
                addInstance();
                engine.lockGL();
                engine.updateUIFlags();
                engine.unlockGL();
                for (int i = 0; i < 3; ++i) render(picture, depth, i / 25.0);
            }
        for (const cli::Diagnostic& finding : watch.take()) ADD_FAILURE() << cli::FormatDiagnostic(finding);
    }
}

}  // namespace
}  // namespace quillon::test
