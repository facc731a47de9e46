#include <iterator>
#include <nlohmann/json.hpp>

#include "ToolTest.h"

namespace quillon::test {

namespace {

using Params = ToolTest;

struct Row {
    const char* uniform;
    const char* type;
    int id;
    int flags;
    const char* rest;  // further fields that must have these values
};

// The control of no kind, which comes first, has taken an index in the effect's count, from which the ids come.
const Row kRows[] = {
    {"g", "GROUP_START", 4, 0, R"({"name": "Group"})"},
    {"far", "FLOAT_SLIDER", 5, 96,
     R"({"name": "A label of more than 31 charact", "label": "A label of more than 31 characters", "value": 0.05,
         "default": 0.05, "valid_min": -1.0, "valid_max": 0.1, "slider_min": -1.0, "slider_max": 0.1,
         "precision": 2, "curve_tolerance": 0.05, "display_flags": 0, "ui_flags": 0})"},
    {"", "GROUP_END", 6, 0, R"({"name": ""})"},
    {"tint", "COLOR", 7, 96, R"({"default": [255, 128, 0, 64], "value": [255, 128, 0, 64]})"},
    {"at", "POINT", 8, 96, R"({"default": [-32768.0, 16384.0], "default_share": [0.5, 0.25]})"},
    {"mode", "POPUP", 9, 64, R"({"default": 2, "num_choices": 2, "choices": ["Add", "Screen"]})"},
    {"mask", "PATH", 8, 64, R"({"kind": "PATH"})"},
};

TEST_F(Params, AreListedAsTheHostHasThem) {
    addEffect("fx", {{"fx.js",
                      "function setup() {\n"
                      "  QL_initParam('none', 0, 'Of no kind');\n"
                      "  QL_setParamFlags(QL_initParam('gone', QL_Type.FLOAT, 'Hidden'), 1);\n"
                      "  QL_initParam('g', QL_Type.GROUP_START, 'Group');\n"
                      "  var far = QL_initParam('far', QL_Type.FLOAT, 'A label of more than 31 characters');\n"
                      "  QL_setParamMinMax(far, -1, 0.1);\n  QL_setParamPrecision(far, 2);\n"
                      "  QL_setParamValue(far, 0.05);\n"
                      "  QL_initParam('', QL_Type.GROUP_END, 'End');\n"
                      "  QL_setParamValue(QL_initParam('tint', QL_Type.COLOR, 'Tint'), [255, 128, 0, 64]);\n"
                      "  QL_setParamValue(QL_initParam('at', QL_Type.POINT2D, 'At'), [0.5, 0.25]);\n"
                      "  var mode = QL_initParam('mode', QL_Type.POPUP, 'Mode');\n"
                      "  QL_setParamChoices(mode, 'Add|Screen');\n  QL_setParamValue(mode, 2);\n"
                      "  QL_initParam('mask', QL_Type.PATH, 'Mask');\n"
                      "}\nfunction draw() {}\n"}});
    const ToolRun json = run("params fx --json");
    ASSERT_EQ(json.err, "");
    const auto list = nlohmann::json::parse(json.out);
    ASSERT_EQ(list.size(), std::size(kRows));
    for (std::size_t i = 0; i < list.size(); ++i) {
        const Row& row = kRows[i];
        EXPECT_EQ(list[i]["index"], i + 1);
        EXPECT_EQ(list[i]["uniform"], row.uniform);
        EXPECT_EQ(list[i]["type"], row.type);
        EXPECT_EQ(list[i]["id"], row.id) << row.uniform;
        EXPECT_EQ(list[i]["flags"], row.flags) << row.uniform;
        const auto rest = nlohmann::json::parse(row.rest);
        for (const auto& [key, value] : rest.items()) EXPECT_EQ(list[i][key], value) << row.uniform << " " << key;
    }
    ASSERT_EQ(run("pack --no-check fx -o " + Module("fx")).status, 0);
    EXPECT_EQ(run("params " + Module("fx") + " --json").out, json.out);

    const ToolRun table = run("params " + Module("fx"));
    EXPECT_EQ(table.err, "");
    EXPECT_EQ(table.out.rfind("index  uniform  kind", 0), 0u) << table.out;
    EXPECT_NE(table.out.find("\n6      mode     POPUP "), std::string::npos) << table.out;
    EXPECT_NE(table.out.find(" choices=Add|Screen\n"), std::string::npos) << table.out;
}

TEST_F(Params, OfAnEffectWithoutAnyAreAnEmptyList) {
    addCopyEffect();
    EXPECT_EQ(run("params copy --json").out, "[]\n");
    EXPECT_EQ(run("params copy").out, "no controls\n");
    addEffect("copy", {{"fx.js", "function setup() {\n  x();\n}\nfunction draw() {}\n"}});
    const ToolRun result = run("params copy");
    EXPECT_EQ(result.err,
              "copy/fx.js:2:3: error: nothing declares x; declare it with var, or look for a typing error [script]\n");
    EXPECT_EQ(result.status, 1);
}

}  // namespace

}  // namespace quillon::test
