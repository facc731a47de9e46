#include "script/SourcePreparation.h"

#include <duktape.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace quillon {
namespace {

const std::string kPreRender = "function preRender(w,h) {};";
const std::string kUpdate = "function updateUIFlags() {};";
const std::string kCall = "\nsetup();\n";

// All that stands in front of the program.
std::string PreludeText() {
    const std::string text = PrepareScriptSource("");
    return text.substr(0, text.find(kCall));
}

struct SourceCase {
    const char* name;
    std::string script;
    std::string expected;  // behind the prelude
};

class SourcePreparation : public ::testing::TestWithParam<SourceCase> {};

TEST_P(SourcePreparation, GivesTheText) {
    const std::string text = PrepareScriptSource(GetParam().script);
    EXPECT_EQ(text, PreludeText() + GetParam().expected);
}

const SourceCase kCases[] = {
    {"empty", "", kCall + kPreRender + kUpdate},
    {"shorthand", "Q.L.initParam('a',1);", "QL_initParam('a',1);" + kCall + kPreRender + kUpdate},
    {"shorthand_in_longer_word", "myQ.L.x 'Q.L.' //Q.L.", "myQL_x 'QL_' //QL_" + kCall + kPreRender + kUpdate},
    {"shorthand_twice_in_a_row", "Q.L.Q.L.Q.Q.L.L.", "QL_QL_Q.QL_L." + kCall + kPreRender + kUpdate},
    {"import_once", "import Q;\nvar a;\nimport Q;", " \nvar a;\nimport Q;" + kCall + kPreRender + kUpdate},
    {"import_makes_no_shorthand", "Q.import Q;L.", "Q. L." + kCall + kPreRender + kUpdate},
    {"import_spelt_otherwise", "import  Q;", "import  Q;" + kCall + kPreRender + kUpdate},
    {"word_in_comment_counts", "// no preRender here", "// no preRender here" + kCall + kUpdate},
    {"word_in_longer_word_counts", "var mypreRenderer;", "var mypreRenderer;" + kCall + kUpdate},
    {"other_case_does_not_count", "var prerender;", "var prerender;" + kCall + kPreRender + kUpdate},
    {"update_defined", "function updateUIFlags() { x(); }", "function updateUIFlags() { x(); }" + kCall + kPreRender},
    {"both_defined", "function updateUIFlags(){} function preRender(){}",
     "function updateUIFlags(){} function preRender(){}" + kCall},
    {"word_made_by_the_shorthand", "preQ.L.Render;", "preQL_Render;" + kCall + kPreRender + kUpdate},
};

INSTANTIATE_TEST_SUITE_P(Programs, SourcePreparation, ::testing::ValuesIn(kCases),
                         [](const auto& row) { return row.param.name; });

// A bare heap, without the API.
class PreparedSource : public ::testing::Test {
protected:
    // The result as JSON text, or the error as text.
    std::string run(const std::string& text) {
        const bool failed = duk_peval_lstring(heap.get(), text.data(), text.size()) != 0;
        if (!failed) duk_json_encode(heap.get(), -1);
        const char* result = duk_safe_to_string(heap.get(), -1);
        const std::string copy = result;
        duk_pop(heap.get());
        return copy;
    }

    struct Destroy {
        void operator()(duk_context* ctx) const { duk_destroy_heap(ctx); }
    };
    std::unique_ptr<duk_context, Destroy> heap{duk_create_heap_default()};
};

TEST_F(PreparedSource, DeclaresTheTables) {
    run(PrepareScriptSource("function setup() {}"));
    EXPECT_EQ(run("QL_Type"),
              R"({"UNKNOWN":0,"FLOAT":1,"POINT":2,"COLOR":3,"LAYER":4,"POINT2D":5,"TEXTURE":6,"PATH":7,"BOOL":8,)"
              R"("POPUP":9,"GROUP_START":10,"GROUP_END":11,"ANGLE":12})");
    EXPECT_EQ(run("QL_GL"),
              R"({"RED":6403,"GREEN":6404,"BLUE":6405,"ALPHA":6406,"NEAREST":9728,"LINEAR":9729,)"
              R"("NEAREST_MIPMAP_NEAREST":9984,"LINEAR_MIPMAP_NEAREST":9985,"NEAREST_MIPMAP_LINEAR":9986,)"
              R"("LINEAR_MIPMAP_LINEAR":9987,"TEXTURE_MAG_FILTER":10240,"TEXTURE_MIN_FILTER":10241,)"
              R"("TEXTURE_WRAP_S":10242,"TEXTURE_WRAP_T":10243,"CLAMP":10244,"REPEAT":10245,"CLAMP_TO_EDGE":33071,)"
              R"("CLAMP_TO_BORDER":33069,"MIRRORED_REPEAT":33648,"TEXTURE_MIN_LOD":33082,"TEXTURE_MAX_LOD":33083,)"
              R"("TEXTURE_BASE_LEVEL":33084,"TEXTURE_MAX_LEVEL":33085,"TEXTURE_LOD_BIAS":34049,)"
              R"("TEXTURE_SWIZZLE_R":36418,"TEXTURE_SWIZZLE_G":36419,"TEXTURE_SWIZZLE_B":36420,)"
              R"("TEXTURE_SWIZZLE_A":36421})");
    EXPECT_EQ(run("QL_ParamFlags"), R"({"NONE":0,"ScaleByWidth":8,"ScaleByHeight":16,"RemoveScale":32})");
    EXPECT_EQ(run("Object.keys(this).filter(function(k){return k.slice(0,3)=='QL_'})"),
              R"(["QL_Type","QL_GL","QL_ParamFlags"])");
}

TEST_F(PreparedSource, LeavesTheTablesToTheScript) {
    EXPECT_EQ(run(PrepareScriptSource("function setup() { QL_Type.FLOAT = 99; QL_GL = 5; }") + "[QL_Type.FLOAT,QL_GL]"),
              "[99,5]");
}

TEST_F(PreparedSource, HasBothDefaultsBeforeAnEmptyProgramFails) {
    EXPECT_NE(run(PrepareScriptSource("")).find("ReferenceError"), std::string::npos);
    EXPECT_EQ(run("[typeof preRender, typeof updateUIFlags, preRender.length]"), R"(["function","function",2])");
}

TEST_F(PreparedSource, MapsLinesBackToTheProgram) {
    const std::string script = "import Q;\nfunction setup() {\n  throw new Error('here');\n}\n";
    const std::string text = PrepareScriptSource(script);
    const std::size_t place = text.find("throw");
    const std::size_t line = 1 + std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), '\n');
    EXPECT_EQ(line - PreludeLineCount(), 3u);
}

TEST(Prelude, HasItsLayout) {
    const std::string prelude = PreludeText();
    EXPECT_EQ(prelude.substr(0, 12), "\n\nvar QL_Typ");
    EXPECT_EQ(prelude.substr(prelude.size() - 4), "};\n\n");
    const std::size_t types = prelude.find("QL_Type");
    EXPECT_GT(prelude.find('\n', types), prelude.find("ANGLE"));
    EXPECT_LT(prelude.find("QL_Type"), prelude.find("QL_GL"));
    EXPECT_LT(prelude.find("QL_GL"), prelude.find("QL_ParamFlags"));
    const std::size_t comment = prelude.find("// GL_ARB_texture_swizzle\n");
    EXPECT_LT(prelude.find("TEXTURE_LOD_BIAS"), comment);
    EXPECT_LT(comment, prelude.find("TEXTURE_SWIZZLE_R"));
}

}  // namespace
}  // namespace quillon
