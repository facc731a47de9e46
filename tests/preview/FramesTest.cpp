#include "PreviewTest.h"

// What an author sees while the effect changes under the page.

namespace quillon::test {

namespace {

using Json = nlohmann::json;

bool IsLoaded(const Json& state) {
    return !state["description"].is_null() && state["faults"].empty();
}

bool HasFaults(const Json& state) {
    return !state["faults"].empty();
}

class Frames : public PreviewTest {
protected:
    std::string rendered(const std::string& more) {
        const ToolRun result = run("render fx -i in.png -o out.argb --frames 0-0 --fps 25 " + more);
        EXPECT_EQ(result.status, 0) << result.err;
        return readFile("out.argb");
    }
};

}  // namespace

TEST_F(Frames, HaveTheBytesOfARenderAndFollowEverySave) {
    start("--set Amount=0.25");
    const Json state = waitForState(IsLoaded);
    ASSERT_TRUE(state.is_object());
    EXPECT_EQ(state["view"]["values"], Json::parse(R"({"amount": {"kind": "FLOAT", "text": "0.25"}})"));
    EXPECT_EQ(state["description"]["input"]["width"], 2);
    EXPECT_EQ(frame("0.25").pixels, rendered("--set amount=0.25"));
    EXPECT_EQ(frame("0.5").pixels, rendered("--set amount=0.5"));

    // Broken, with the author's line, then fixed, by a rename as editors save.
    writeFile("fx/fx.js", Script("  nowhere();\n"));
    writeFile("fx/tint.frag", "void main() {\n  gl_FragColor = vec3(1.0);\n}\n");
    const Json faults = waitForState(HasFaults)["faults"];
    ASSERT_FALSE(faults.empty());
    EXPECT_EQ(faults[0]["file"], "tint.frag");
    EXPECT_EQ(faults[0]["source"], "  gl_FragColor = vec3(1.0);");
    EXPECT_EQ(frame("0.5").text["faults"], faults);
    writeFile("new.frag", "void main() { gl_FragColor = vec4(0.0, 1.0, 0.0, 1.0); }\n");
    writeFile("fx/fx.js", Script());
    std::filesystem::rename(pathOf("new.frag"), pathOf("fx/tint.frag"));
    EXPECT_TRUE(waitForState(IsLoaded).is_object());
    EXPECT_EQ(frame("0.5").pixels, std::string("\xFF\x00\xFF\x00\xFF\x00\xFF\x00", 8));

    // The folder goes and comes back.
    std::filesystem::rename(pathOf("fx"), pathOf("away"));
    EXPECT_TRUE(waitForState(HasFaults).is_object());
    std::filesystem::rename(pathOf("away"), pathOf("fx"));
    EXPECT_TRUE(waitForState(IsLoaded).is_object());
}

TEST_F(Frames, OutliveAnEffectThatNeverEndsOrCrashes) {
    writeFile("fx/fx.js", Script("  if (QL_getParamValue(amount) > 0.7) for (;;) {}\n"));
    start("--time-limit 1");
    ASSERT_TRUE(waitForState(IsLoaded).is_object());
    const std::string good = frame("0.5").pixels;
    EXPECT_EQ(good.size(), 8u);
    const Json endless = frame("1").text["faults"];
    ASSERT_EQ(endless.size(), 1u);
    EXPECT_EQ(endless[0]["rule"], "script/never-returns");
    EXPECT_EQ(endless[0]["line"], 9);
    EXPECT_EQ(frame("0.5").pixels, good) << "another value";
    writeFile("fx/fx.js", "function setup() {\n  for (;;) {}\n}\nfunction draw() {}\n");
    const Json stuck = waitForState(HasFaults);
    ASSERT_TRUE(stuck.is_object());
    EXPECT_EQ(stuck["faults"][0]["source"], "  for (;;) {}");
    writeFile("fx/fx.js", "function setup() {\n  QL_release(-1);\n}\nfunction draw() {}\n");
    EXPECT_TRUE(waitForState([](const Json& state) {
                    return HasFaults(state) &&
                           state["faults"][0]["text"].get<std::string>().find("fx.js:2") != std::string::npos;
                }).is_object());
    writeFile("fx/fx.js", Script());
    EXPECT_TRUE(waitForState(IsLoaded).is_object());
    EXPECT_EQ(frame("0.5").pixels, good) << "the next save";
}

TEST_F(Frames, ShowALayersPictureFromThePage) {
    addEffect("fx", {{"fx.js",
                      "var copy, layer;\n"
                      "function setup() {\n"
                      "  layer = QL_initParam('layer', QL_Type.LAYER, 'Layer');\n"
                      "  copy = QL_initShader('copy');\n"
                      "}\n"
                      "function draw() {\n"
                      "  QL_setShaderParam(copy, layer);\n"
                      "  QL_renderShader(copy, QL_getSequenceRT(), true);\n"
                      "}\n"},
                     {"copy.frag",
                      "uniform sampler2D layer;\n"
                      "void main() { gl_FragColor = texture2D(layer, gl_TexCoord[0].st); }\n"}});
    start();
    ASSERT_TRUE(waitForState(IsLoaded).is_object());
    const auto send = [&](const std::string& bytes) {
        const auto answer =
            newClient()->Post(root + "layer?name=layer&title=in.png", bytes, "application/octet-stream");
        return answer ? Json::parse(answer->body) : Json();
    };
    EXPECT_EQ(send("no picture")["faults"].size(), 1u);
    EXPECT_EQ(send(readFile("in.png")), Json::object());
    const std::string input = readFile("raw.argb");
    EXPECT_EQ(frame("1").pixels, input);
    writeFile("fx/other.txt", "a change");
    ASSERT_TRUE(waitForState([](const Json& state) { return state["generation"] == 3; }).is_object());
    EXPECT_EQ(frame("1").pixels, input) << "after a reload";
}

TEST_F(Frames, EndWithTheToolAndSayWhatTheScriptPrintsAndMisses) {
    writeFile("fx/fx.js", Script("  print('a note');\n  QL_setShaderParamVal(tint, 'amounts', 1);\n"));
    start();
    ASSERT_TRUE(waitForState(IsLoaded).is_object());
    const Json answer = frame("1").text;
    ASSERT_EQ(answer["notes"].size(), 1u);
    EXPECT_NE(answer["notes"][0].get<std::string>().find("fx.js:9: note: a note"), std::string::npos);
    std::map<int, std::string> rules;  // by line
    for (const Json& warning : answer["warnings"]) rules[warning["line"]] = warning["rule"];
    EXPECT_EQ(rules[9], "script/unguarded-console");
    EXPECT_EQ(rules[10], "script/unknown-uniform");

    // Another one beside it, but not at its port.
    const std::string port = host.substr(host.find(':') + 1);
    EXPECT_EQ(run("preview fx -i in.png --no-browser --port " + port).status, 1);
    const auto first = std::move(preview);
    const std::string firstHost = host;
    start();
    ASSERT_TRUE(waitForState(IsLoaded).is_object());
    EXPECT_NE(host, firstHost);
    EXPECT_EQ(frame("1").pixels.size(), 8u);
    EXPECT_EQ(httplib::Client("http://" + firstHost).Get("/")->status, 403);

    preview->end();
    preview->wait();
    EXPECT_NE(preview->lastWords().find("fx.js:9: note: a note\n"), std::string::npos) << preview->lastWords();
    EXPECT_FALSE(newClient()->Get(root));
    EXPECT_EQ(run("preview fx -i in.png --set nothing=1 --no-browser").status, 2);
    EXPECT_EQ(run("preview missing --no-browser").status, 1);
}

}  // namespace quillon::test
