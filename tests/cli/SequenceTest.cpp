#include "ToolTest.h"
#include "cli/effect/HostRun.h"
#include "cli/keyframes/KeyTrack.h"
#include "cli/worker/WorkerGroup.h"

// Sequences: controls that move, pieces, and runs that go on.

namespace quillon::test {

namespace {

// Shows its controls in floats: red is a number, green the x of a position, blue an entry.
const Files kShow = {{"fx.js",
                      "var shader, ids = [];\n"
                      "function setup() {\n"
                      "  ids[0] = QL_initParam('amount', QL_Type.FLOAT, 'The amount');\n"
                      "  ids[1] = QL_initParam('center', QL_Type.POINT2D, 'Center');\n"
                      "  ids[2] = QL_initParam('mode', QL_Type.POPUP, 'Mode');\n"
                      "  shader = QL_initShader('s', 'uniform float amount; uniform vec2 center; uniform int mode; "
                      "void main() { gl_FragColor = vec4(amount, center.x, float(mode), 1.0); }');\n}\n"
                      "function draw() {\n"
                      "  ids.forEach(function (id) { QL_setShaderParam(shader, id); });\n"
                      "  QL_renderShader(shader, QL_getSequenceRT(), true);\n}\n"}};

class Sequences : public ToolTest {
protected:
    void SetUp() override {
        addEffect("fx", kShow);
        writeSamples<float>("in.argb", std::vector<float>(100 * 4));
    }

    const std::string kRender = "render fx -i in.argb --size 100x1 --depth 32 -o o##.argb --frames 0-12x3 ";

    std::vector<float> shown(std::size_t channel) {
        std::vector<float> values;
        for (const char* name : {"o00.argb", "o03.argb", "o06.argb", "o09.argb", "o12.argb"})
            values.push_back(readSamples<float>(name).at(channel));
        return values;
    }
};

struct KeyCase {
    const char* options;
    std::vector<float> amounts;  // at the frames 0, 3, 6, 9 and 12
    std::vector<float> centers;  // x
    std::vector<float> modes;    // entries from 1; their texts are 0 to 9
};

TEST_F(Sequences, ControlsMoveFromKeyToKey) {
    writeFile("semicolon.csv",
              "\xEF\xBB\xBF"
              "Frame;The amount;center;mode\r\n3;0;10,0;2\r\n\r\n9;\"1~hold\";40,0~smooth;4\r\n12;5;;\r\n");
    writeFile("parts.csv", "frame,center.y,amount,center.x\n3,0,,10\n9,7,1,40\n");
    writeFile("keys.json",
              R"({"amount": {"0": [0, "hold"], "6": 1, "12": 3}, "center": {"3": [[10, 0], "smooth"], "9": [40, 0]},)"
              R"( "mode": {"0": "3", "9": 5}})");
    // Smooth: share * share * (3 - 2 * share) is 5/32 at a quarter of the way.
    const KeyCase kRows[] = {
        {"--key amount@0=0~smooth --key amount@12=32 --set center=5,5",
         {0, 5, 16, 27, 32},
         {5, 5, 5, 5, 5},
         {0, 0, 0, 0, 0}},
        {"--keys semicolon.csv", {0, 0, 0.5f, 1, 5}, {10, 10, 25, 40, 40}, {3, 3, 3, 5, 5}},
        {"--keys parts.csv --key \"The amount@3=1\"", {1, 1, 1, 1, 1}, {10, 10, 25, 40, 40}, {0, 0, 0, 0, 0}},
        {"--keys keys.json", {0, 0, 1, 2, 3}, {10, 10, 25, 40, 40}, {4, 4, 4, 6, 6}},
    };
    for (const KeyCase& row : kRows) {
        ASSERT_EQ(run(kRender + row.options).err, "") << row.options;
        EXPECT_EQ(shown(1), row.amounts) << row.options;
        EXPECT_EQ(shown(2), row.centers) << row.options;
        EXPECT_EQ(shown(3), row.modes) << row.options;
    }
}

// An effect may ask for a control at any moment, and on any scale; keys answer for that one.
TEST(KeyedControls, HaveTheirValueAtEachMomentThatAnEffectAsksFor) {
    static std::vector<double> seen;
    const auto entry = [](PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef*[], PF_LayerDef*, void*) -> PF_Err {
        PF_ParamDef def{};
        def.param_type = PF_Param_FLOAT_SLIDER;
        if (cmd == PF_Cmd_PARAMS_SETUP) {
            out->num_params = 2;
            return in->inter.add_param(in->effect_ref, -1, &def);
        }
        if (cmd != PF_Cmd_RENDER) return PF_Err_NONE;
        const std::pair<A_long, A_u_long> kMoments[] = {
            {in->current_time, in->time_scale}, {0, 25}, {3, 25}, {12, 100}, {-5, 25}, {100, 5}};
        for (const auto& [time, scale] : kMoments) {
            in->inter.checkout_param(in->effect_ref, 1, time, in->time_step, scale, &def);
            seen.push_back(def.u.fs_d.value);
            in->inter.checkin_param(in->effect_ref, &def);
        }
        return PF_Err_NONE;
    };
    cli::KeyTrack track;
    track.add(2, {.numbers = {10}}, cli::Interpolation::linear);
    track.add(6, {.numbers = {20}}, cli::Interpolation::linear);
    cli::HostRun run(host::EffectModule(entry), {.route = host::Route::classic, .timeStep = 1, .timeScale = 25});
    run.start();
    run.apply();
    run.setValuesBy([&](host::HostInstance& instance, PF_ParamIndex index, double seconds) {
        instance.setFloat(index, track.at(seconds * 25).numbers[0]);
    });
    run.instance().currentTime = 4;
    host::FrameRequest request;
    request.input = std::make_shared<host::World>(4, 4, 8);
    EXPECT_EQ(run.render(request).result.error(), PF_Err_NONE);
    const std::vector<double> kWanted = {15, 10, 12.5, 12.5, 10, 20};
    ASSERT_EQ(seen.size(), kWanted.size());
    for (std::size_t i = 0; i < kWanted.size(); ++i) EXPECT_NEAR(seen[i], kWanted[i], 1e-9) << i;
    EXPECT_EQ(run.violations(), std::vector<std::string>{});
}

TEST_F(Sequences, WrongKeysAreRefusedWithTheirPlace) {
    writeFile("a.csv", "frame,amount\n0,1\n5,much\n");
    writeFile("b.csv", "frame,amount,amont\n");
    writeFile("c.csv", "time,amount\n");
    writeFile("d.csv", "frame,center.x,center.y\n4,10,\n");
    writeFile("a.json", R"({"amount": {"0": 1, "x": 2}})");
    writeFile("b.json", R"({"amount": {"0": 1, "7": [1, 2, 3]}})");
    writeFile("c.json", "{");
    const std::pair<const char*, const char*> kRows[] = {
        {"--key amount=1", "--key amount=1: write it as NAME@FRAME=VALUE"},
        {"--key amount@0=1 --set amount=2", "amount: has keys and a --set"},
        {"--key amount@0=1 --key \"The amount@0=2\"", "amount: has two keys at frame 0"},
        {"--key amount@0=1~smoth", "\"1~smoth\" is not a value for it"},
        {"--keys a.csv", "a.csv: row 3, column 2 (amount): \"much\" is not a value for it"},
        {"--keys b.csv", "b.csv: row 1, column 3: amont: the effect has no such control; did you mean amount?"},
        {"--keys c.csv", "c.csv: row 1: its first column is not \"frame\""},
        {"--keys d.csv", "d.csv: row 2, columns of center: \"10\" is not a value for it; it takes x,y"},
        {"--keys a.json", "a.json: amount: \"x\" is no frame number"},
        {"--keys b.json", "b.json: amount, frame 7: \"1,2,3\" is not a value for it"},
        {"--keys c.json", "c.json: is no JSON: "},
        {"--keys no.csv", "no.csv: no such file"},
    };
    for (const auto& [options, words] : kRows) {
        const ToolRun result = run(kRender + options);
        EXPECT_NE(result.status, 0) << options;
        EXPECT_NE(result.err.find(words), std::string::npos) << options << ": " << result.err;
    }
    EXPECT_FALSE(exists("o00.argb"));
}

TEST_F(Sequences, PiecesAndResumedRunsMakeTheSameFrames) {
    const std::string options = kRender + "--key amount@0=0 --key amount@12=1~hold ";
    ASSERT_EQ(run(options).err, "");
    const std::vector<float> whole = shown(1);
    for (const std::string& name : list())
        if (name.starts_with("o")) std::filesystem::remove(pathOf(name));
    EXPECT_EQ(run(options + "--part 2/3").out, "o03.argb\no06.argb\n");
    EXPECT_EQ(run(options + "--part 3/3 --threads 1").out, "o09.argb\no12.argb\n");
    EXPECT_EQ(run(options + "--resume").out, "o00.argb\n");
    EXPECT_EQ(run(options + "--resume").out, "");
    EXPECT_EQ(shown(1), whole);
}

TEST_F(Sequences, ProcessesMakeTheSameFramesInTheSameOrder) {
    const std::string keys = "--key amount@0=0 --key amount@12=1 ";
    const ToolRun single = run(kRender + keys);
    ASSERT_EQ(single.err, "");
    const std::vector<float> whole = shown(1);
    const std::string stream = run("render fx -i in.argb --size 100x1 --depth 32 -o - --frames 0-12x3 " + keys).out;
    for (const std::string options : {"-j 2", "-j 9 --threads 2"}) {
        for (const std::string& name : list())
            if (name.starts_with("o")) std::filesystem::remove(pathOf(name));
        const ToolRun split = run(kRender + keys + options + " --progress json");
        EXPECT_EQ(split.out, single.out) << options;
        for (const char* frame : {"0", "3", "6", "9", "12"})
            EXPECT_NE(split.err.find("{\"frame\":" + std::string(frame) + ",\"path\":\"o"), std::string::npos)
                << split.err;
        EXPECT_EQ(shown(1), whole) << options;
        EXPECT_EQ(run("render fx -i in.argb --size 100x1 --depth 32 -o - --frames 0-12x3 " + keys + options).out,
                  stream);
    }
    std::filesystem::remove(pathOf("o06.argb"));
    EXPECT_EQ(run(kRender + keys + "-j 2 --resume").out, "o06.argb\n");
}

// What -j cannot hide: state of an effect, faults, and their exit statuses.
TEST_F(Sequences, ProcessesReportAsOneWould) {
    const auto drawing = [this](const std::string& name, const std::string& red) {
        addEffect(name, {{"fx.js",
                          "var s, n = 0;\nfunction setup() { s = QL_initShader('s', 'uniform float a; void main() "
                          "{ gl_FragColor = vec4(a); }'); }\nfunction draw() {\n  QL_setShaderParamVal(s, 'a', " +
                              red + ");\n  QL_renderShader(s, QL_getSequenceRT(), true);\n}\n"}});
    };
    drawing("counts", "++n");
    drawing("breaks", "QL_getTime() < 4.5 / 25 ? 1 : nothing");
    const std::string options = " -i in.argb --size 100x1 --depth 32 --frames 0-9 -j 2 -o ";
    EXPECT_NE(
        run("render counts" + options + "n%d.argb").err.find("counts: warning: frame 5 depends on what was rendered"),
        std::string::npos);
    EXPECT_NE(run("render counts" + options + "-").err.find("counts: warning: frame 1 depends"), std::string::npos);
    const ToolRun broken = run("render breaks" + options + "b%d.argb");
    EXPECT_EQ(broken.status, 1);
    EXPECT_NE(broken.err.find("breaks/fx.js:4:62: error: nothing declares nothing"), std::string::npos) << broken.err;
    EXPECT_NE(broken.err.find("quillon: error: stopped at frame 5\n"), std::string::npos) << broken.err;
    EXPECT_FALSE(exists("b5.argb"));
    const ToolRun wrong = run("render counts --set nothing=1" + options + "c%d.argb");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_NE(wrong.err.find("nothing: the effect has no"), std::string::npos) << wrong.err;
}

TEST_F(Sequences, RenderTargetsAreShownByVariableOrNumber) {
    addEffect("rooms",
              {{"fx.js",
                "var s, rooms, box = {};\n"
                "function setup() {\n"
                "  s = QL_initShader('s', 'uniform float a; void main() { gl_FragColor = vec4(a, gl_FragCoord.y, 0.0, "
                "1.0); }');\n"
                "  rooms = [QL_initRenderTarget(1, 2, 16), QL_initRenderTarget(2, 3, 32)];\n"
                "  box.small = QL_initRenderTarget(1, 1, 8);\n}\n"
                "function draw() {\n"
                "  [rooms[0], rooms[1], box.small, QL_getSequenceRT()].forEach(function (target, i) {\n"
                "    QL_setShaderParamVal(s, 'a', (i + 1) / 4); QL_renderShader(s, target, true); });\n}\n"}});
    ASSERT_EQ(run("pack rooms -o " + Module("rooms")).status, 0);
    const std::string render = " -i in.argb --size 100x1 --depth 32 -o shown.argb --show ";
    for (const std::string& effect : {std::string("rooms"), Module("rooms")}) {
        ASSERT_EQ(run("render " + effect + render + "\"rooms[1]\"").err, "") << effect;
        // Alpha, red, green, blue; the row at GL's bottom is last.
        const std::vector<float> kPixels = {1, 0.5f, 2.5f, 0, 1, 0.5f, 2.5f, 0, 1, 0.5f, 1.5f, 0,
                                            1, 0.5f, 1.5f, 0, 1, 0.5f, 0.5f, 0, 1, 0.5f, 0.5f, 0};
        EXPECT_EQ(readSamples<float>("shown.argb"), kPixels) << effect;
    }
    ASSERT_EQ(run("render rooms" + render + "\"rooms[0]\"").err, "");
    EXPECT_EQ(readSamples<std::uint16_t>("shown.argb"),
              (std::vector<std::uint16_t>{32768, 8192, 32768, 0, 32768, 8192, 16384, 0}));
    const std::string listed = run("info rooms").out;
    for (const std::string variable : {"rooms[0]", "rooms[1]", "box.small"}) {
        const std::size_t end = listed.find(", variable " + variable);
        ASSERT_NE(end, std::string::npos) << listed;
        const std::string number =
            listed.substr(listed.rfind("index ", end) + 6, end - listed.rfind("index ", end) - 6);
        ASSERT_EQ(run("render rooms" + render + number).err, "");
        const std::string byNumber = readFile("shown.argb");
        ASSERT_EQ(run("render rooms" + render + '"' + variable + '"').err, "");
        EXPECT_EQ(readFile("shown.argb"), byNumber) << variable;
    }
    const ToolRun wrong = run("render rooms" + render + "room");
    EXPECT_EQ(wrong.status, 2);
    EXPECT_NE(wrong.err.find("box.small"), std::string::npos) << wrong.err;
}

TEST_F(Sequences, AreSeenOnSheets) {
    // The middle of a small picture, alpha, red, green, blue, and whether there is text below it.
    const auto cell = [this](std::uint32_t sheetWidth, std::uint32_t column, std::uint32_t row) {
        const std::vector<std::uint8_t> bytes = readSamples<std::uint8_t>("sheet.argb");
        // Pictures of 100x1 with 24 rows of text, 8 pixels apart.
        const std::uint32_t left = 8 + 108 * column, top = 8 + 33 * row;
        const auto at = [&](std::uint32_t x, std::uint32_t y) { return &bytes.at((y * sheetWidth + x) * 4); };
        bool hasText = false;
        for (std::uint32_t y = top + 1; y < top + 25; ++y)
            for (std::uint32_t x = left; x < left + 100; ++x) hasText = hasText || at(x, y)[1] == 255;
        const std::uint8_t* const middle = at(left + 50, top);
        return std::vector<int>{middle[0], middle[1], middle[2], middle[3], hasText};
    };
    const std::string render = "render fx -i in.argb --size 100x1 --depth 32 --contact-sheet sheet.argb ";
    ASSERT_EQ(run(render + "--sweep amount=0.2,1,0.4 --sweep \"center=0,0;10,0\"").err, "");
    EXPECT_EQ(readFile("sheet.argb").size(), 4u * (8 + 2 * 108) * (8 + 3 * 33));
    EXPECT_EQ(cell(224, 0, 0), (std::vector<int>{255, 51, 0, 0, 1}));
    EXPECT_EQ(cell(224, 1, 1), (std::vector<int>{255, 255, 255, 0, 1}));
    EXPECT_EQ(cell(224, 0, 2), (std::vector<int>{255, 102, 0, 0, 1}));
    const ToolRun frames = run(render + "--frames 0-20x10 --key amount@0=0 --key amount@20=1 -o o##.argb");
    EXPECT_EQ(frames.out, "o00.argb\no10.argb\no20.argb\nsheet.argb\n");
    EXPECT_EQ(cell(224, 1, 0), (std::vector<int>{255, 128, 0, 0, 1}));
    EXPECT_EQ(cell(224, 0, 1), (std::vector<int>{255, 255, 0, 0, 1}));

    const std::pair<const char*, const char*> kRows[] = {
        {"--sweep amount=1,much", "amount: \"much\" is not a value for it"},
        {"--sweep amount=1,2 --set amount=1", "amount: has a sweep and another value"},
        {"--sweep amount=1,2 --sweep amount=3", "amount: has a sweep and another value"},
        {"--sweep amount=1,2 --frames 0-1", "--sweep: shows one frame"},
        {"--sweep amount=1,2 -o o.argb", "--sweep: is for --contact-sheet"},
        {"--frames 0-999", "--contact-sheet: shows at most 400 frames"},
        {"--frames 0-9 -j 2", "--contact-sheet: is made by one process"},
    };
    for (const auto& [options, words] : kRows) {
        const ToolRun result = run(render + options);
        EXPECT_EQ(result.status, 2) << options;
        EXPECT_NE(result.err.find(words), std::string::npos) << options << ": " << result.err;
    }
    EXPECT_NE(run("render fx -i in.argb --size 100x1 --depth 32").err.find("-o is missing"), std::string::npos);
}

TEST_F(Sequences, AWorkerThatDoesNotAnswerIsEnded) {
    addEffect("endless", {{"fx.js", "while (true);"}});
    cli::WorkerGroup workers(2, ToolProgram());
    const std::vector<std::string> arguments = {
        "render",           pathOf("endless"), "-i", pathOf("in.argb"), "--size", "100x1", "--depth", "32", "-o",
        pathOf("o%d.argb"), "--frames",        "0-1"};
    ASSERT_TRUE(workers.send(1, {{{"arguments", arguments}, {"frames", {0, 1}}}}));
    EXPECT_FALSE(workers.wait({}, std::chrono::steady_clock::now() + std::chrono::milliseconds(300)));
    workers.kill(1);
    const auto end = workers.wait();
    ASSERT_TRUE(end && end->worker == 1 && !end->message);
    EXPECT_NE(workers.endOf(1).status, 0);
    // The other one is still there, and ends with a request that it can answer.
    ASSERT_TRUE(workers.send(0, {{{"arguments", {"render"}}}}));
    const auto answer = workers.wait();
    ASSERT_TRUE(answer && answer->message);
    EXPECT_EQ(answer->message->text.at("status"), 2);
    EXPECT_FALSE(workers.wait(0)->message);
    EXPECT_EQ(workers.endOf(0).status, 0);
    EXPECT_FALSE(workers.wait());
}

TEST_F(Sequences, MissingInputsAreNamedBeforeAnythingRenders) {
    for (const char* name : {"in1.argb", "in2.argb"}) writeSamples<float>(name, std::vector<float>(4));
    for (const std::string options : {"", " -j 2", " --part 1/3"}) {
        const ToolRun result = run("render fx -i in%d.argb --size 1x1 --depth 32 -o o##.argb --frames 1-3" + options);
        const bool isWhole = !options.ends_with("1/3");  // the first piece needs one picture
        EXPECT_EQ(result.err, isWhole ? "quillon: error: in3.argb: no such file, for frame 3; shorten --frames, or add "
                                        "it\n"
                                      : "");
        EXPECT_EQ(result.out, isWhole ? "" : "o01.argb\n") << options;
    }
}

TEST_F(Sequences, AreComparedInUnitsOfTheDeeperPicture) {
    writeSamples<std::uint8_t>("a.argb", {255, 10, 20, 30, 255, 0, 0, 0, 255, 0, 0, 0, 0, 0, 0, 0});
    writeSamples<std::uint8_t>("b.argb", {255, 10, 24, 30, 255, 0, 1, 0, 255, 0, 0, 0, 0, 0, 0, 0});
    writeSamples<std::uint8_t>("small.argb", {255, 10, 20, 30});
    writeFile("a1.argb", readFile("a.argb"));
    writeFile("a2.argb", readFile("b.argb"));
    ASSERT_EQ(run("render fx -i small.argb --size 1x1 --depth 8 -o small.png").err, "");
    const std::string raw = " --size 4x1 --depth 8 ";
    struct Row {
        std::string arguments;
        int status;
        const char* words;
    };
    const Row kRows[] = {
        {"a.argb a.argb" + raw, 0, "a.argb a.argb: equal\n"},
        {"a.argb b.argb" + raw, 1,
         "2 of 4 pixels differ (50 %), in 1/255\n  largest  red 0, green 4, blue 0, alpha 0\n"},
        {"a.argb b.argb --fail 4" + raw, 0, "mean     red 0, green 1.25, blue 0, alpha 0"},
        {"a.argb b.argb --fail 3 --fail-percent 25" + raw, 0, ""},
        {"a.argb b.argb --fail 3 --fail-percent 24" + raw, 1, ""},
        {"a.argb a%d.argb --frames 1-2 -o d##.png" + raw, 1, "a.argb a2.argb: 2 of 4"},
        {"a.argb small.png" + raw, 1, "4x1 and 1x1 pixels"},
        {"a.argb b.argb", 2, ""},
    };
    for (const Row& row : kRows) {
        const ToolRun result = run("compare " + row.arguments);
        EXPECT_EQ(result.status, row.status) << row.arguments << result.err;
        EXPECT_NE(result.out.find(row.words), std::string::npos) << row.arguments << ": " << result.out;
    }
    ASSERT_EQ(run("render fx -i d02.png -o d.argb").err, "");  // the drawn difference is a picture
}

TEST_F(Sequences, ProgressIsALineForEachFrame) {
    const ToolRun result = run(kRender + "--progress json --part 1/2");
    EXPECT_EQ(result.err.rfind(R"({"frame":0,"path":"o00.argb","milliseconds":)", 0), 0u) << result.err;
    EXPECT_NE(result.err.find("\n"
                              R"({"frame":3,"path":"o03.argb",)"),
              std::string::npos)
        << result.err;
}

// What the chart's own footage is: it starts as the picture, moves, and repeats.
TEST_F(Sequences, ChartsMove) {
    EXPECT_EQ(run("chart -o c##.argb --size 96x54 --frames 0-48x24").out, "c00.argb\nc24.argb\nc48.argb\n");
    run("chart -o still.argb --size 96x54");
    EXPECT_EQ(readFile("c00.argb"), readFile("still.argb"));
    EXPECT_EQ(readFile("c48.argb"), readFile("still.argb"));
    EXPECT_NE(readFile("c24.argb"), readFile("still.argb"));
    EXPECT_EQ(run("chart -o - --size 8x4 --frames 1-2").out.size(), std::size_t{2} * 8 * 4 * 4);
    EXPECT_EQ(run("chart -o still.png --frames 0-1").status, 2);
    // It is the input where none is given.
    addCopyEffect();
    EXPECT_EQ(run("render copy -o d%d.argb --size 96x54 --frames 0-1 -j 2").out, "d0.argb\nd1.argb\n");
    EXPECT_EQ(readFile("d1.argb"), readFile("still.argb"));
}

// A folder renders by the tool's own engine, and a module by itself.
TEST_F(Sequences, FoldersAndTheirModulesRenderTheSame) {
    addCopyEffect();
    ASSERT_EQ(run("chart -o in.exr --size 33x21").err, "");
    ASSERT_EQ(run("pack copy -o " + Module("copy")).status, 0);
    for (const std::string depth : {"8", "16", "32"}) {
        for (const std::string route : {"smart", "classic"}) {
            const std::string options = " -i in.exr --depth " + depth + " --route " + route + " -o ";
            ASSERT_EQ(run("render copy" + options + "folder.argb").err, "");
            ASSERT_EQ(run("render " + Module("copy") + options + "module.argb").err, "");
            EXPECT_EQ(readFile("folder.argb"), readFile("module.argb")) << options;
        }
    }
}

}  // namespace

}  // namespace quillon::test
