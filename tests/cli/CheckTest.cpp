#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "ToolTest.h"
#include "cli/diagnostics/Rules.h"
#include "packer/WholeFile.h"

// `quillon check` as authors and their editors use it. Each rule is held by its example in docs/check.md.

namespace quillon::test {

namespace {

using Check = ToolTest;
using testing::HasSubstr;

constexpr char kSoftware[] = "LIBGL_ALWAYS_SOFTWARE=1";

const std::string kControl =
    "var s, c;\nfunction setup() {\n  c = QL_initParam('amount', QL_Type.FLOAT, 'Amount');\n"
    "  QL_setParamMinMax(c, 0, 100);\n  QL_setParamValue(c, 50);\n  s = QL_initShader('copy');\n}\n";
const std::string kDrawCopy =
    "function draw() {\n  QL_setShaderParamVal(s, 'sInput0', QL_getSequenceTexture());\n"
    "  QL_renderShader(s, QL_getSequenceRT(), true);\n}\n";
const std::string kCopySetup = "var s;\nfunction setup() { s = QL_initShader('copy'); }\n";

std::string Shader(const std::string& result, const std::string& declarations = "") {
    return "uniform sampler2D sInput0;\n" + declarations +
           "void main() {\n  vec4 c = texture2D(sInput0, gl_TexCoord[0].st);\n  gl_FragColor = " + result + ";\n}\n";
}

struct FrameCase {
    const char* name;
    int level;
    std::string script;
    std::string fragment;
    const char* words;  // of the first finding; the empty text for none at all
};

// What only frames show.
const FrameCase kFrameCases[] = {
    {"not_a_number", 3, kCopySetup + kDrawCopy, Shader("vec4(c.rgb, 1.0) / (c.r - c.r)"), "fx: error: green is "},
    {"one_color", 3, kCopySetup + kDrawCopy, Shader("vec4(0.5, 0.25, 0.0, min(c.a + 1.0, 1.0))"),
     "fx: warning: the frame is 0.502, 0.251, 0 with alpha 1 everywhere; look at draw()"},
    {"transparent", 3, kCopySetup + kDrawCopy, Shader("c * min(c.a - 1.0, 0.0)"),
     "fx: warning: the frame is transparent everywhere"},
    {"alpha_beyond", 3, kCopySetup + kDrawCopy, Shader("vec4(c.rgb, 1.5)"), "fx: warning: alpha is 1.5 at 0, 0"},
    {"depths_differ", 3,
     kCopySetup +
         "function draw() {\n  QL_setShaderParamVal(s, 'gain', QL_getSurfaceDim(QL_getSequenceRT())[2] === 8 ? 1 "
         ": 0.5);\n" +
         kDrawCopy.substr(kDrawCopy.find('\n') + 1),
     Shader("c * vec4(vec3(gain), 1.0)", "uniform float gain;\n"), "fx: warning: around "},
    {"no_output", 3, kCopySetup + "function draw() {\n}\n", Shader("c"), "fx/fx.js:3: error: "},
    {"equal_to_its_input", 4, kCopySetup + kDrawCopy, Shader("c"),
     "fx: warning: the frame is equal to its input, whatever its controls are"},
    {"a_control_that_nothing_reads", 4, kControl + kDrawCopy, Shader("c.brga"),
     "fx: warning: 'amount' changes nothing at its ends"},
    {"a_fault_at_an_end_of_a_control", 4,
     kControl + "function draw() {\n  if (QL_getParamValue(c) > 99) missing.call();\n" +
         kDrawCopy.substr(kDrawCopy.find('\n') + 1),
     Shader("c.brga"), "fx/fx.js:9:33: error: nothing declares missing"},
    {"a_fault_at_one_size", 4,
     kCopySetup + "function draw() {\n  if (QL_getSurfaceDim(QL_getSequenceRT())[0] === 4097) null.x;\n" +
         kDrawCopy.substr(kDrawCopy.find('\n') + 1),
     Shader("c.brga"),
     "fx/fx.js:4: error: draw: TypeError: cannot read property 'x' of null (of 4097x3 pixels, at 8 bits)"},
    {"instances_that_share", 4,
     kControl +
         "var last = 50;\nfunction draw() {\n  QL_setShaderParamVal(s, 'gain', last / 100);\n"
         "  last = QL_getParamValue(c);\n" +
         kDrawCopy.substr(kDrawCopy.find('\n') + 1),
     Shader("c * vec4(vec3(gain), 1.0)", "uniform float gain;\n"),
     "fx: warning: a frame is another one after a second instance has rendered with other values"},
    {"order", 5,
     kCopySetup + "var n = 0;\nfunction draw() {\n  QL_setShaderParamVal(s, 'gain', 1 / ++n);\n" +
         kDrawCopy.substr(kDrawCopy.find('\n') + 1),
     Shader("c * vec4(vec3(gain), 1.0)", "uniform float gain;\n"),
     "fx: warning: frame 2 is another one after frame 5 than after frame 1"},
    {"growth", 5,
     kCopySetup + "function draw() {\n  QL_initRenderTarget(8, 8, 8);\n" + kDrawCopy.substr(kDrawCopy.find('\n') + 1),
     Shader("c.brga"), "fx/fx.js:4: error: each frame makes something here"},
};

TEST_F(Check, LooksAtFrames) {
    for (const FrameCase& row : kFrameCases) {
        SCOPED_TRACE(row.name);
        addEffect("fx", {{"fx.js", row.script}, {"copy.frag", row.fragment}});
        const std::string level = std::to_string(row.level);
        const ToolRun result = run("check fx --level " + level, kSoftware);
        if (*row.words)
            EXPECT_EQ(result.err.substr(0, std::string_view(row.words).size()), row.words) << result.err;
        else
            EXPECT_EQ(result.err, "");
        EXPECT_EQ(result.status, result.err.find(": error: ") == std::string::npos ? 0 : 1);
        EXPECT_EQ(result.out.empty(), result.status == 1) << result.out;
        if (row.level == 3 || result.status == 1) continue;
        EXPECT_EQ(run("check fx --level 3", kSoftware).err, "") << "is of level " << row.level;
    }
}

// The limit holds for each part of a script; what the script cannot be blamed for is ended from outside.
TEST_F(Check, EndsWhatNeverReturns) {
    const std::string endless = "  for (;;) { var x = 1; }\n";
    const std::pair<std::string, const char*> kRows[] = {
        {"var s = 'copy';\nfunction setup() {\n" + endless + "}\n" + kDrawCopy,
         "fx/fx.js:3: error: setup: still running after 0.3 s"},
        {kCopySetup + "function draw() {\n" + endless + "}\n", "fx/fx.js:4: error: draw: still running after 0.3 s"},
        {kCopySetup + "function preRender(w, h, s) {\n" + endless + "}\n" + kDrawCopy,
         "fx/fx.js:4: error: preRender: still running after 0.3 s"},
        {kCopySetup + kDrawCopy + "function updateUIFlags() {\n" + endless + "}\n",
         "fx/fx.js:8: error: updateUIFlags: still running after 0.3 s"},
        {kCopySetup + "function draw() {\n  try { for (;;) {} } catch (e) {}\n}\n", "fx/fx.js:4: error: draw: still"},
    };
    for (const auto& [script, words] : kRows) {
        addEffect("fx", {{"fx.js", script}, {"copy.frag", Shader("c")}});
        const ToolRun result = run("check fx --time-limit 0.3", kSoftware);
        EXPECT_EQ(result.err.substr(0, std::string_view(words).size()), words) << result.err;
        EXPECT_EQ(result.status, 1);
    }
    // Mesa's software renderer ends each loop some day, which is long after the limit with so many reads in it.
    std::string reads;
    for (int i = 0; i < 8; ++i) reads += "    c += texture2D(sInput0, c.rg * " + std::to_string(i) + ".5) * 1.0e-9;\n";
    std::string shader = Shader("c");
    shader.insert(shader.find("  gl_FragColor"),
                  "  for (float i = 0.0; i < 1.0e30; i += c.a * 1.0e-9) {\n" + reads + "  }\n");
    addEffect("fx", {{"fx.js", kCopySetup + kDrawCopy}, {"copy.frag", shader}});
    const ToolRun result = run("check fx --time-limit 0.3", kSoftware);
    EXPECT_THAT(result.err, HasSubstr("fx/fx.js:5: error: a frame: shader \"copy\" has not ended after 0.3 s"))
        << result.err;
    EXPECT_EQ(result.status, 1);
}

TEST_F(Check, ReportsSeveralEffectsAndHasThreeForms) {
    addCopyEffect();
    ASSERT_EQ(run("pack copy -o " + Module("copy")).err.find("warning"), std::string::npos);
    addEffect("warned",
              {{"fx.js", CopyScript(/*flip=*/true) + "\nMath.random;\n"}, {"copy.frag", kCopyFragment}, {"a~", ""}});
    addEffect("bad",
              {{"fx.js",
                "\xEF\xBB\xBFvar \xC3\xA9;\r\n\tfunction setup() { \t/* \xC3\xA9 */ nothing(); } function draw() {}"}});
    const std::string effects = "copy warned " + Module("copy");
    const ToolRun text = run("check " + effects + " bad nowhere", kSoftware);
    EXPECT_EQ(text.out, "copy: nothing wrong\nwarned: 1 warning\n" + Module("copy") + ": nothing wrong\n");
    EXPECT_THAT(text.err, HasSubstr("warned/a~: warning: a backup that an editor left"));
    EXPECT_THAT(text.err, HasSubstr("bad/fx.js:2:30: error: nothing declares nothing"));
    EXPECT_THAT(text.err, HasSubstr("quillon: error: nowhere: no such effect"));
    EXPECT_EQ(text.status, 1);
    EXPECT_EQ(run("check " + effects).status, 0);
    EXPECT_EQ(run("check --deny-warnings " + effects).status, 1);

    const auto json = nlohmann::json::parse(run("check --format json " + effects + " bad nowhere", kSoftware).out);
    EXPECT_EQ(json["format"], 1);
    EXPECT_EQ(json["effects"].size(), 5);
    const auto& bad = json["effects"][3];
    EXPECT_EQ(bad["effect"], "bad");
    EXPECT_EQ(bad["findings"][0]["rule"], "script/undeclared-name");
    EXPECT_EQ(bad["findings"][0]["line"], 2);
    EXPECT_EQ(bad["findings"][0]["column"], 30);
    EXPECT_EQ(bad["errors"], bad["findings"].size());
    EXPECT_THAT(json["effects"][4]["fault"].get<std::string>(), HasSubstr("no such effect"));

    const auto sarif = nlohmann::json::parse(run("check --format sarif bad", kSoftware).out);
    const auto& sarifRun = sarif["runs"][0];
    const auto& finding = sarifRun["results"][0];
    EXPECT_EQ(sarif["version"], "2.1.0");
    EXPECT_EQ(sarifRun["tool"]["driver"]["rules"][finding["ruleIndex"].get<std::size_t>()]["id"], finding["ruleId"]);
    EXPECT_EQ(finding["locations"][0]["physicalLocation"],
              nlohmann::json::parse(R"({"artifactLocation": {"uri": "bad/fx.js"},
                                        "region": {"startLine": 2, "startColumn": 30}})"));
    EXPECT_EQ(list(), (std::vector<std::string>{"bad", "copy", Module("copy"), "warned"}));
}

TEST_F(Check, LeavesOutWhatTheAuthorSilences) {
    const std::string draw = "function draw() {\n  var seed = Math.random();";
    const struct {
        std::string start;
        const char* words;
        int status = 0;
    } kRows[] = {
        {draw + "\n", "fx/fx.js:4:14: warning: "},
        {draw + "  // quillon-ignore script/chance-in-draw\n", ""},
        {"function draw() {\n  // quillon-ignore script/x, script/chance-in-draw: meant\n  var seed = Math.random();\n",
         "fx/fx.js:4:21: warning: no rule is named script/x"},
        {draw + "\n\n  // quillon-ignore script/chance-in-draw\n", "fx/fx.js:4:14: warning: "},
        {"function draw() {\n  var seed = nothing;  // quillon-ignore script/undeclared-name\n",
         "fx/fx.js:4:14: error: ", 1},
    };
    for (const auto& [start, words, status] : kRows) {
        addEffect("fx", {{"fx.js", kCopySetup + start + kDrawCopy.substr(kDrawCopy.find('\n') + 1)},
                         {"copy.frag", Shader("c.brga")}});
        const ToolRun result = run("check fx", kSoftware);
        EXPECT_EQ(result.err.substr(0, *words ? std::string_view(words).size() : std::string::npos), words)
            << result.err;
        EXPECT_EQ(result.status, status);
    }
}

// What is wrong in every frame of every depth, and a picture that is missing because of it.
TEST_F(Check, ReportsAFaultOnceAndWithoutWhatFollowsFromIt) {
    const auto rulesOf = [&](const std::string& script, const std::string& result) {
        addEffect("fx", {{"fx.js", script}, {"copy.frag", Shader(result)}});
        const auto json = nlohmann::json::parse(run("check --format json fx", kSoftware).out);
        std::vector<std::string> rules;
        for (const auto& finding : json["effects"][0]["findings"]) rules.push_back(finding["rule"]);
        return rules;
    };
    EXPECT_THAT(rulesOf("function setup() { var s = QL_initShader('copy'); }\nvar s;\n" + kDrawCopy, "c"),
                testing::ElementsAre("script/dead-id", "script/dead-id"));
    EXPECT_THAT(rulesOf(kCopySetup + kDrawCopy, "vec4(0.5, 0.25, 0.0, 1.5)"),
                testing::UnorderedElementsAre("script/unknown-uniform", "render/one-color", "render/outside-range"));
}

struct Example {
    std::string rule;
    std::string file;
    std::string text;
};

// The headings of docs/check.md that are rules, and the effects with a fault below them.
std::vector<Example> ReadExamples(const std::string& page, std::vector<std::string>& headings) {
    constexpr std::pair<std::string_view, const char*> kFiles[] = {
        {"```js fault", "fx.js"}, {"```glsl fault", "copy.frag"}, {"```xml fault", "config.xml"}};
    std::vector<Example> examples;
    std::istringstream lines(page.substr(page.find("\n## Rules\n")));
    bool isInside = false;
    for (std::string line; std::getline(lines, line);) {
        if (isInside && line != "```") examples.back().text += line + "\n";
        if (line == "```") isInside = false;
        if (line.starts_with("### ")) headings.push_back(line.substr(4));
        for (const auto& [fence, file] : kFiles) {
            if (line != fence) continue;
            examples.push_back({headings.back(), file, ""});
            isInside = true;
        }
    }
    return examples;
}

// One command for all examples of a level.
TEST_F(Check, FindsEachRuleOfItsPageInTheExample) {
    std::vector<std::string> headings, rules;
    const auto page = ReadWholeFile(SourceFolder() / "docs" / "check.md");
    const std::vector<Example> examples =
        ReadExamples({reinterpret_cast<const char*>(page.data()), page.size()}, headings);
    for (const cli::Rule& rule : cli::Rules()) rules.emplace_back(rule.name);
    EXPECT_EQ(headings, rules);
    ASSERT_GT(examples.size(), 80u);
    for (int level = 1; level <= 5; ++level) {
        std::string command = "check --format json --time-limit 1 --level " + std::to_string(level);
        std::vector<const Example*> checked;
        for (const Example& example : examples) {
            const cli::Rule* const rule = cli::FindRule(example.rule);
            if (!rule || rule->level != level) continue;
            const std::string name = "effect" + std::to_string(checked.size());
            std::filesystem::remove_all(pathOf(name));
            Files files = {{"fx.js", CopyScript(/*flip=*/true)}, {"copy.frag", kCopyFragment}};
            std::erase_if(files, [&](const auto& file) { return file.first == example.file; });
            files.emplace_back(example.file, example.text);
            addEffect(name, files);
            checked.push_back(&example);
            command += " " + name;
        }
        const auto found = nlohmann::json::parse(run(command, kSoftware).out)["effects"];
        ASSERT_EQ(found.size(), checked.size());
        for (std::size_t i = 0; i < checked.size(); ++i) {
            std::set<std::string> names;
            for (const auto& finding : found[i]["findings"]) names.insert(finding["rule"]);
            EXPECT_TRUE(names.contains(checked[i]->rule)) << checked[i]->rule << "\n" << found[i].dump(1);
        }
    }
}

}  // namespace

}  // namespace quillon::test
