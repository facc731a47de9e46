// PARAMS_SETUP: the script's controls as the host gets them.

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

std::string SetupOf(const std::string& body) {
    return "function setup() { var p; " + body + " } function draw() {}";
}

std::string Controls(const std::string& kinds) {
    return SetupOf("[" + kinds + "].forEach(function (k, i) { QL_initParam('p' + i, k, 'P' + i); });");
}

class Registration : public ShellTest {};

TEST_F(Registration, GivesEachKindWithTypeFlagsAndId) {
    HostSession& session = start(Controls("1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12"));
    const struct {
        PF_ParamType type;
        PF_ParamFlags flags;
        A_long id;
    } kRows[] = {
        {PF_Param_FLOAT_SLIDER, 96, 3}, {PF_Param_POINT_3D, 0, 4},   {PF_Param_COLOR, 96, 5},
        {PF_Param_LAYER, 64, 6},        {PF_Param_POINT, 96, 7},     {PF_Param_POPUP, 64, 8},
        {PF_Param_PATH, 64, 7},         {PF_Param_CHECKBOX, 64, 10}, {PF_Param_POPUP, 64, 11},
        {PF_Param_GROUP_START, 0, 12},  {PF_Param_GROUP_END, 0, 13}, {PF_Param_ANGLE, 96, 14},
    };
    ASSERT_THAT(session.parameters(), SizeIs(std::size(kRows)));
    for (std::size_t i = 0; i < std::size(kRows); ++i) {
        SCOPED_TRACE(i);
        const PF_ParamDef& def = session.parameters()[i];
        EXPECT_EQ(def.param_type, kRows[i].type);
        EXPECT_EQ(def.flags, kRows[i].flags);
        EXPECT_EQ(def.uu.id, kRows[i].id);
        EXPECT_EQ(def.ui_flags, 0);
        const std::string name = "P" + std::to_string(i);
        EXPECT_EQ(def.PF_DEF_NAME, kRows[i].type == PF_Param_GROUP_END ? "" : name);
    }
    EXPECT_THAT(maps.firstIndexOfKind, ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 0, 0, 12));
    EXPECT_THAT(session.records().registeredUIs, ElementsAre(Field(&PF_CustomUIInfo::events, 4)));
    EXPECT_THAT(session.records().optionsButtonNames, ElementsAre(" "));
}

TEST_F(Registration, FillsDefaultsInTheHostsScales) {
    HostSession& session = start(
        SetupOf("p = QL_initParam('a', 1, 'A'); QL_setParamValue(p, 0.1); QL_setParamMinMax(p, -3, 7.5);"
                " QL_setParamFlags(p, 8 | 255 << 24);"
                "p = QL_initParam('b', 2, 'B'); QL_setParamValue(p, [1, 2, 3]);"
                "p = QL_initParam('c', 3, 'C'); QL_setParamValue(p, [255, 128.9, 0, 7]);"
                "[[0.5, 1], [-0.25, 0.1], [0.00001, -0.00001]].forEach(function (v) {"
                "  p = QL_initParam('d', 5, 'D'); QL_setParamValue(p, v); });"
                "p = QL_initParam('e', 6, 'E'); QL_setParamChoices(p, 'x|y|z'); QL_setParamValue(p, 2);"
                "p = QL_initParam('f', 8, 'F'); QL_setParamValue(p, 0x1FE);"
                "p = QL_initParam('g', 9, 'G'); QL_setParamChoices(p, 'u|v'); QL_setParamValue(p, 0x2FFFE);"
                "p = QL_initParam('h', 12, '0123456789012345678901234567890longer'); QL_setParamValue(p, -90.3);"));
    ASSERT_THAT(session.parameters(), SizeIs(10));
    const auto at = [&](std::size_t i) { return session.parameters()[i].u; };

    const PF_FloatSliderDef slider = at(0).fs_d;
    EXPECT_EQ(slider.value, static_cast<double>(0.1f));
    EXPECT_THAT((std::vector{slider.dephault, slider.valid_min, slider.slider_min, slider.valid_max, slider.slider_max,
                             slider.curve_tolerance}),
                ElementsAre(0.1f, -3, -3, 7.5f, 7.5f, 0.05f));
    EXPECT_EQ(slider.precision, 255);
    EXPECT_EQ(slider.display_flags, 0);

    const PF_Point3DDef point = at(1).point3d_d;
    EXPECT_THAT((std::vector{point.x_value, point.y_value, point.z_value, point.x_dephault, point.y_dephault,
                             point.z_dephault}),
                ElementsAre(1, 2, 2, 1, 2, 2));
    for (const PF_UnionablePixel& pixel : {at(2).cd.value, at(2).cd.dephault})
        EXPECT_THAT((std::vector<int>{pixel.alpha, pixel.red, pixel.green, pixel.blue}), ElementsAre(7, 255, 128, 0));

    // The fraction in 1/65536, rounded away from zero, is what ends up in front of the point.
    const std::uint32_t kPoints[][2] = {
        {0x80000000, 0}, {0xC0000000, 0x199Au << 16}, {1u << 16, static_cast<std::uint32_t>(-1) << 16}};
    for (std::size_t i = 0; i < 3; ++i) {
        const PF_PointDef& td = at(3 + i).td;
        const auto x = static_cast<PF_Fixed>(kPoints[i][0]), y = static_cast<PF_Fixed>(kPoints[i][1]);
        EXPECT_THAT((std::vector{td.x_value, td.x_dephault, td.y_value, td.y_dephault}), ElementsAre(x, x, y, y)) << i;
        EXPECT_EQ(td.restrict_bounds, 0);
    }
    EXPECT_THAT((std::vector<int>{at(6).pd.value, at(6).pd.dephault, at(6).pd.num_choices}), ElementsAre(0, 0, 3));
    EXPECT_STREQ(at(6).pd.u.namesptr, "x|y|z");
    EXPECT_THAT((std::vector<int>{at(7).bd.value, at(7).bd.dephault}), ElementsAre(0x1FE, 0xFE));
    EXPECT_STREQ(at(7).bd.u.nameptr, "");
    EXPECT_THAT((std::vector<int>{at(8).pd.value, at(8).pd.dephault, at(8).pd.num_choices}), ElementsAre(-2, -2, 2));
    EXPECT_STREQ(at(8).pd.u.namesptr, "u|v");
    EXPECT_THAT((std::vector{at(9).ad.value, at(9).ad.dephault}),
                Each(static_cast<PF_Fixed>(static_cast<double>(-90.3f) * 65536.0)));
    EXPECT_STREQ(session.parameters()[9].PF_DEF_NAME, "0123456789012345678901234567890");
}

// Declaration index to host index.
using Indices = std::map<std::uint32_t, std::uint32_t>;

TEST_F(Registration, CountsWithoutHiddenControlsAndWithUnknownKinds) {
    HostSession& session =
        start(SetupOf("QL_initParam('a', 0, 'A'); QL_initParam('b', 1, 'B');"
                      "p = QL_initParam('c', 1, 'C'); QL_setParamFlags(p, 1); QL_initParam('d', 77, 'D');"
                      "QL_initParam('e', 12, 'E');"));
    EXPECT_EQ(maps.hostIndexOfParam, (Indices{{0, 1}, {1, 2}, {3, 3}, {4, 4}}));
    EXPECT_EQ(maps.firstIndexOfKind[FLOAT], 2u);
    EXPECT_EQ(maps.firstIndexOfKind[ANGLE], 4u);
    EXPECT_THAT(maps.paramOfHostIndex, IsEmpty());
    ASSERT_THAT(session.parameters(), SizeIs(2));
    EXPECT_EQ(session.parameters()[0].uu.id, 4);
    EXPECT_EQ(session.parameters()[1].uu.id, 6);
    EXPECT_EQ(session.paramsSetup().out.num_params, 5);
}

}  // namespace
}  // namespace quillon::test
