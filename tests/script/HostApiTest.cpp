#include <cstdio>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "platform/FailFast.h"
#include "script/Scripting.h"
#include "support/BuiltFiles.h"
#include "support/EndOfProcess.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

class HostApi : public EngineTest {
protected:
    void SetUp() override {
        start(
            "var seen = 'none'; function setup() {} function draw() { QL_setOutputExtent(3, 3); }\n"
            "function preRender(w, h, x) { seen = QL_getTime(); }\n");
    }
};

TEST_F(HostApi, IsAllThatScriptsGetAsOrdinaryProperties) {
    expectValues({
        {"Object.keys(this).filter(function (n) { return /^QL_/.test(n); }).every(function (n) {"
         " var p = Object.getOwnPropertyDescriptor(this, n); return p.writable && p.enumerable; }, this)",
         "true"},
        {"['print', 'alert', 'console', 'require', 'module', 'load', 'readFile', 'process'].some(function (n) {"
         " return n in this; }, this)",
         "false"},
        {"delete this.QL_initTexture && typeof QL_initTexture", "\"undefined\""},
    });
}

std::string TextOf(const char* file) {
    std::ostringstream text;
    text << std::ifstream(SourceFolder() / file).rdbuf();
    return text.str();
}

// Each match of the pattern's first group in the text, in order, with the number of parameters that its second group
// declares.
std::map<std::string, long> Declared(const std::string& text, const char* pattern) {
    const std::regex declaration(pattern), parameter(R"(\w+\??\s*(,|:|$))");
    std::map<std::string, long> found;
    for (std::sregex_iterator match(text.begin(), text.end(), declaration), none; match != none; ++match) {
        std::string parameters = (*match)[2];
        parameters = std::regex_replace(parameters, std::regex(R"(:[^,]*)"), ":");
        found[(*match)[1]] = std::distance(std::sregex_iterator(parameters.begin(), parameters.end(), parameter), none);
    }
    return found;
}

// The page and the editors' declarations have every function of the engine, with as many parameters, and no other.
TEST_F(HostApi, IsWhatThePageAndTheDeclarationsSay) {
    const std::string declarations = TextOf("share/quillon.d.ts");
    const auto declared = Declared(declarations, R"(declare function (QL_\w+)\(([^)]*)\))");
    std::string names, lengths;
    for (const auto& [name, parameters] : declared) {
        names += (names.empty() ? "\"" : ",\"") + name + "\"";
        lengths += (lengths.empty() ? "" : ",") + std::to_string(parameters);
    }
    EXPECT_EQ(eval("Object.keys(this).filter(function (n) { return typeof this[n] === 'function' && /^QL_/.test(n); },"
                   " this).sort()"),
              "[" + names + "]");
    // Functions that count their arguments themselves have a length of 0.
    EXPECT_EQ(eval("[" + names + "].map(function (n, i) { return this[n].length || [" + lengths + "][i]; }, this)"),
              "[" + lengths + "]");
    std::string heads;
    const std::string text = TextOf("docs/script-api.md");
    for (std::size_t at = 0; (at = text.find("\n### ", at)) != text.npos; ++at)
        heads += text.substr(at + 1, text.find('\n', at + 1) - at);
    EXPECT_EQ(Declared(heads, R"((QL_\w+)\(([^)]*)\))"), declared);

    for (const char* table : {"QL_Type", "QL_ParamFlags", "QL_GL"}) {
        const std::size_t start = declarations.find(std::string("declare const ") + table);
        const std::string body = declarations.substr(start, declarations.find("};", start) - start);
        std::string members;
        const std::regex member(R"((\w+): number;)");
        for (std::sregex_iterator match(body.begin(), body.end(), member), none; match != none; ++match)
            members += (members.empty() ? "\"" : ",\"") + (*match)[1].str() + "\"";
        EXPECT_EQ(eval(std::string("Object.keys(") + table + ")"), "[" + members + "]");
    }
}

TEST_F(HostApi, NamesNumbers) {
    expectValues({
        {"[QL_Type.FLOAT, QL_Type.ANGLE, QL_ParamFlags.RemoveScale]", "[1,12,32]"},
        {"[QL_GL.CLAMP, QL_GL.REPEAT]", "[10244,10245]"},  // not GL's own 0x2900 and 0x2901
        {"(QL_GL.REPEAT = 3, QL_GL.REPEAT)", "3"},
    });
}

TEST_F(HostApi, GivesEachInstanceItsTimeAndOriginAndAllTheLastComposition) {
    SequenceHandle* const first = addInstance();
    const char* const kAll = "[QL_getTime('dropped'), QL_getInputOrigin(), QL_getContextExtent()]";
    EXPECT_EQ(eval(kAll), "[0,[0,0],[0,0,1]]");
    frame(2, 2, 8, {}, 1.25);
    engine.setInputOrigin(static_cast<std::uint32_t>(-5), 7);
    engine.setContextExtent(1920, 1080, 0.5f);
    EXPECT_EQ(eval(kAll), "[1.25,[-5,7],[1920,1080,0.5]]");
    addInstance();
    frame(2, 2, 8, {}, -3);
    engine.setInputOrigin(1, 0x80000000u);
    engine.setContextExtent(640, 4294967295u, 5.0f);
    EXPECT_EQ(eval(kAll), "[-3,[1,-2147483648],[640,4294967295,1]]");
    engine.selectSequence(first);
    std::uint32_t width = 0, height = 0;
    engine.preRender(4, 4, &width, &height);
    EXPECT_EQ(eval(kAll), "[1.25,[-5,7],[640,4294967295,1]]");
    EXPECT_EQ(eval("seen"), "1.25") << "the size is asked for before the new frame's time is known";
}

TEST_F(HostApi, ReleasesWhatAnIdNamesAndIgnoresTheRest) {
    addInstance();
    for (const char* harmless : {"0", "1", "12345", "0xFFFFFF", "'text'", "NaN", "undefined", "-0.9", "0x1000000",
                                 "0x1000099", "0x2FFFFFF", "0x3000001", "0x4000001", "0x6FFFFFF"})
        EXPECT_EQ(eval("QL_release(" + std::string(harmless) + ")"), "true") << harmless;
    expectValues({
        {"(a = QL_initTexture('a'), b = QL_initTexture('b'), c = QL_initTexture('c'), [a, b, c])",
         "[67108865,67108866,67108867]"},
        {"[QL_release(b), QL_release(b)]", "[true,true]"},
        {"[QL_initTexture('d'), QL_initTexture('e')]", "[67108866,67108868]"},
    });
}

// On purpose, not by an accident of memory; an observer learns why and where.
TEST(ReleaseDeathTest, EndsTheProcessForAnIdOfNoKind) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    SetFailFastObserver([](const char* reason) {
        const ScriptError error = Scripting::instance().atCurrentLine(reason);
        std::fprintf(stderr, "%s, line %d of \"%s\"\n", error.message.c_str(), error.line, error.evaluated.c_str());
    });
    for (const char* id : {"0x5000001", "0x7000001", "-1", "-16777216", "4294967295", "1e99"})
        EXPECT_EXIT(
            {
                Scripting::instance().Open();
                Scripting::instance().Eval(
                    ("\n[1].map(function () {\nQL_release(" + std::string(id) + "); });").c_str());
            },
            EndedOnPurpose, "an id that names no kind of entity was released, line 3 of \"\n\\[1")
            << id;
}

}  // namespace
}  // namespace quillon::test
