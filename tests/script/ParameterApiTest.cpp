#include <cmath>

#include "support/EngineTest.h"

namespace quillon::test {
namespace {

// ids[K] is a control of kind K; `odd` has a number that no kind has.
const char* const kControls =
    "var ids = [], odd;\n"
    "function setup() {\n"
    "  for (var k = 0; k <= 12; ++k) ids.push(QL_initParam('u' + k, k, 'Control ' + k));\n"
    "  odd = QL_initParam('odd', 99, 'Odd');\n"
    "}\n"
    "function draw() {}\n";

class ParameterApi : public EngineTest {
protected:
    void SetUp() override {
        start(kControls);
        addInstance();
    }
    // The record of ids[kind] in the selected instance.
    Parameter& control(std::uint32_t kind) { return *engine.parameterInfo(kind); }
};

TEST_F(ParameterApi, DeclaresControlsWithTheirDefaults) {
    EXPECT_EQ(engine.parameterCount(), 14u);
    expectValues({
        {"ids[0] === 0x1000001 && ids[12] === 0x100000D && odd === 0x100000E", "true"},
        // map gives each call two arguments more, which are dropped.
        {"ids.map(QL_getParamValue)",
         "[16777217,0,[0,0,0],[0,0,0,0],67108865,[0,0],0,16777224,0,0,16777227,16777228,0]"},
        // Without a value: the id, cut to an integer.
        {"[QL_getParamValue(odd + 0.5), QL_getParamValue(ids[10] + 0.9), QL_getParamValue(String(ids[11]))]",
         "[16777230,16777227,16777228]"},
        {"QL_getSurfaceDim(QL_getParamValue(ids[QL_Type.LAYER]))", "[2,2,8]"},
    });
}

TEST_F(ParameterApi, DeclaresByTheNumberOfArguments) {
    expectValues({
        {"[QL_initParam(), QL_initParam('only')]", "[0,0]"},
        {"QL_initParam('bare', 4)", "16777231"},
        {"QL_getSurfaceDim(QL_getParamValue(16777231))", "[2,2,8]"},
        {"QL_initParam(undefined, '1', undefined)", "16777232"},
        {"QL_initParam(7, 2147483648, null)", "16777233"},
    });
    ASSERT_EQ(engine.parameterCount(), 17u);
    EXPECT_EQ(control(14).label, "");
    EXPECT_EQ(control(15).uniformName + control(15).label, "undefinedundefined");
    EXPECT_EQ(control(15).kind, FLOAT);
    EXPECT_EQ(control(16).kind, 2147483647u) << "an int is clamped, and no kind is refused";
    EXPECT_EQ(control(16).label, "null");
}

TEST_F(ParameterApi, WritesAndReadsValuesByKind) {
    expectValues({
        {"[QL_setParamValue(ids[1], 0.1), QL_getParamValue(ids[1])]", "[true,0.10000000149011612]"},
        {"[QL_setParamValue(ids[2], [1, 2, 3, 4]), QL_getParamValue(ids[2])]", "[true,[1,2,3]]"},
        {"[QL_setParamValue(ids[3], [1, 2, 3, '4']), QL_getParamValue(ids[3])]", "[true,[1,2,3,4]]"},
        {"[QL_setParamValue(ids[8], true), QL_getParamValue(ids[8])]", "[true,1]"},
        {"[QL_setParamValue(ids[9], -2.9), QL_getParamValue(ids[9])]", "[true,-2]"},
        {"[QL_setParamValue(ids[6], 67108866), QL_getParamValue(ids[6])]", "[true,67108866]"},
        {"[QL_setParamValue(ids[4], 67108867.9), QL_getParamValue(ids[4])]", "[true,67108867]"},
        {"[0, 7, 10, 11].map(function (k) { return QL_setParamValue(ids[k], 5); })", "[true,true,true,true]"},
        // A missing element is no number.
        {"QL_setParamValue(ids[2], [5]) && QL_getParamValue(ids[2])", "[5,null,null]"},
        // A value that is not an array changes nothing.
        {"QL_setParamValue(ids[5], [1, 2])", "true"},
        {"QL_setParamValue(ids[5], {0: 8, 1: 9, length: 2}) && QL_getParamValue(ids[5])", "[1,2]"},
        // Integers are clamped, and what is no number is 0.
        {"QL_setParamValue(ids[8], 4294967295) && QL_getParamValue(ids[8])", "2147483647"},
        {"QL_setParamValue(ids[8], NaN) && QL_getParamValue(ids[8])", "0"},
        {"QL_setParamValue(ids[8], -1e99) && QL_getParamValue(ids[8])", "-2147483648"},
    });
}

TEST_F(ParameterApi, RefusesWhatIsNoLiveControl) {
    const char* const kEachCall =
        "['getParamValue', 'setParamValue', 'setParamMinMax', 'setParamChoices', 'setParamPrecision',"
        " 'setParamEnabled', 'setParamFlags', 'getParamFlags'].every(function (n) {"
        " return this['QL_' + n](ID, 1, 1) === false; }, this)";
    for (const char* id : {"undefined", "null", "0", "1", "'abc'", "NaN", "-1", "0x1000000", "0x10000FF", "0x2000001",
                           "67108865", "4294967295", "0.99 + 0xFFFFFF"}) {
        std::string call = kEachCall;
        call.replace(call.find("ID"), 2, id);
        EXPECT_EQ(eval(call), "true") << id;
    }
}

TEST_F(ParameterApi, SetsTheRangeOfFloatsOnly) {
    expectValues({{"QL_setParamMinMax(ids[1], 7, -0.5)", "true"},
                  {"QL_setParamMinMax(ids[12], 7, 8)", "true"},
                  {"QL_setParamMinMax(ids[9], 7, 8)", "true"}});
    EXPECT_EQ(control(FLOAT).min[0], 7.0f);
    EXPECT_EQ(control(FLOAT).max[0], -0.5f);
    for (const std::uint32_t kind : {ANGLE, POPUP}) {
        EXPECT_EQ(control(kind).min[0], -100.0f);
        EXPECT_EQ(control(kind).max[0], 100.0f);
    }
    EXPECT_EQ(eval("QL_setParamMinMax(ids[1], 1)"), "true");
    EXPECT_TRUE(std::isnan(control(FLOAT).max[0]));
}

TEST_F(ParameterApi, CountsTheEntriesOfAPopup) {
    constexpr struct {
        const char* text;
        const char* stored;
        std::uint32_t count;
    } kCases[] = {{"'Soft|Hard'", "Soft|Hard", 2}, {"'Soft|'", "Soft|", 2}, {"'Soft'", "Soft", 0}, {"'|'", "|", 2}};
    for (const auto& [text, stored, count] : kCases) {
        EXPECT_EQ(eval("QL_setParamChoices(ids[9], " + std::string(text) + ")"), "true");
        EXPECT_EQ(control(POPUP).choices, stored);
        EXPECT_EQ(control(POPUP).choiceCount, count) << text;
    }
}

TEST_F(ParameterApi, KeepsPrecisionEnablingAndFlagsInOneWord) {
    expectValues({
        {"[QL_setParamFlags(ids[1], 5), QL_getParamFlags(ids[1])]", "[true,5]"},
        {"[QL_setParamPrecision(ids[1], 3), QL_getParamFlags(ids[1])]", "[true,50331653]"},
        {"QL_setParamPrecision(ids[1], 128) && QL_getParamFlags(ids[1])", "-2147483643"},
        {"QL_setParamPrecision(ids[1], -1) && QL_getParamFlags(ids[1])", "-16777211"},
        {"QL_setParamFlags(ids[1], 4294967296 + 9) && QL_getParamFlags(ids[1])", "9"},
        // Enabled by number, not by truth.
        {"[true, false, 0.5, '2', NaN, [3]].map(function (on) { return QL_setParamFlags(ids[1], 8)"
         " && QL_setParamEnabled(ids[1], on) && QL_getParamFlags(ids[1]); })",
         "[8,10,10,8,10,8]"},
    });
}

TEST_F(ParameterApi, StoresAPointByElementAndAColorAsAWhole) {
    const char* const kBad = "{valueOf: function () { throw 1; }}";
    expectValues({
        {"(QL_setParamValue(ids[2], [1, 2, 3]), QL_setParamValue(ids[3], [1, 2, 3, 4]), 0)", "0"},
        {"QL_setParamValue(ids[2], [7, 8, " + std::string(kBad) + "])", "throws 1"},
        {"QL_setParamValue(ids[3], [7, 8, " + std::string(kBad) + ", 9])", "throws 1"},
        {"[QL_getParamValue(ids[2]), QL_getParamValue(ids[3])]", "[[7,8,3],[1,2,3,4]]"},
    });
}

TEST_F(ParameterApi, LeavesCopiesOfAReleasedControlInPlace) {
    SequenceHandle* const old = addInstance();
    expectValues({{"QL_setParamValue(ids[1], 5) && QL_release(ids[1])", "true"}, {"QL_getParamValue(ids[1])", "5"}});
    // An instance without a copy of it declares another one, which gets the lowest free number.
    SequenceHandle* const between = addInstance();
    expectValues({{"QL_getParamValue(ids[1])", "false"},
                  {"QL_initParam('fresh', 8, 'Fresh') === ids[1]", "true"},
                  {"QL_getParamValue(ids[1])", "0"}});
    addInstance();
    EXPECT_EQ(eval("QL_setParamValue(ids[1], 7) && QL_getParamValue(ids[1])"), "7");
    EXPECT_EQ(engine.parameterInfo(1)->uniformName, "fresh");
    engine.selectSequence(between);
    EXPECT_EQ(eval("QL_getParamValue(ids[1])"), "0");
    engine.selectSequence(old);
    EXPECT_EQ(eval("QL_getParamValue(ids[1])"), "5") << "the old copy hides the new record";
    EXPECT_EQ(engine.parameterInfo(1)->uniformName, "u1");
}

}  // namespace
}  // namespace quillon::test
