#include <frei0r.h>
#include <gtest/gtest.h>

#include "Plugin.h"
#include "frei0r/ControlValues.h"
#include "frei0r/FramePixels.h"

namespace quillon::test {
namespace {

using namespace frei0r;

// The declarations of this repository against those that hosts are compiled with.
static_assert(sizeof(PluginInfo) == sizeof(f0r_plugin_info) && sizeof(ParamInfo) == sizeof(f0r_param_info) &&
              sizeof(Color) == sizeof(f0r_param_color) && sizeof(Position) == sizeof(f0r_param_position));
#define SAME_PLACE(ours, field, theirs, name) static_assert(offsetof(ours, field) == offsetof(theirs, name))
SAME_PLACE(PluginInfo, author, f0r_plugin_info, author);
SAME_PLACE(PluginInfo, pluginType, f0r_plugin_info, plugin_type);
SAME_PLACE(PluginInfo, colorModel, f0r_plugin_info, color_model);
SAME_PLACE(PluginInfo, interfaceVersion, f0r_plugin_info, frei0r_version);
SAME_PLACE(PluginInfo, majorVersion, f0r_plugin_info, major_version);
SAME_PLACE(PluginInfo, minorVersion, f0r_plugin_info, minor_version);
SAME_PLACE(PluginInfo, paramCount, f0r_plugin_info, num_params);
SAME_PLACE(PluginInfo, explanation, f0r_plugin_info, explanation);
SAME_PLACE(ParamInfo, type, f0r_param_info, type);
SAME_PLACE(ParamInfo, explanation, f0r_param_info, explanation);
SAME_PLACE(Color, blue, f0r_param_color, b);
SAME_PLACE(Position, y, f0r_param_position, y);
static_assert(int(PluginType::filter) == F0R_PLUGIN_TYPE_FILTER && int(PluginType::source) == F0R_PLUGIN_TYPE_SOURCE &&
              int(PluginType::mixer2) == F0R_PLUGIN_TYPE_MIXER2 && kColorModelRgba8888 == F0R_COLOR_MODEL_RGBA8888 &&
              kInterfaceVersion == FREI0R_MAJOR_VERSION && int(ParamType::boolean) == F0R_PARAM_BOOL &&
              int(ParamType::number) == F0R_PARAM_DOUBLE && int(ParamType::color) == F0R_PARAM_COLOR &&
              int(ParamType::position) == F0R_PARAM_POSITION);

Listing SomeListing() {
    Listing listing{"Name", "What it does", PluginType::mixer2, 3, 250, 7, {}};
    listing.controls.push_back({"Half-life", "0 to 1", Role::number, 2, -1.5f, 10, {std::byte{1}}});
    listing.controls.push_back({"", "", Role::depth, 5, 0, 0, {}});
    return listing;
}

TEST(Listing, ComesBackAsItWasWritten) {
    const PluginFile plugin({{"fx.js", ""}}, SomeListing());
    EXPECT_EQ(ReadListingOf(plugin.path()), SomeListing());
    EXPECT_EQ(ReadListingOf(TemplateModule()), std::nullopt);
    EXPECT_EQ(ReadListingOf(plugin.path() / "none"), std::nullopt);
}

TEST(Listing, DamagedInAnyByteIsSafeToReadAndCutShortIsNone) {
    const std::vector<std::byte> sound = WriteListing(SomeListing());
    for (std::size_t at = 0; at < sound.size(); ++at) {
        EXPECT_EQ(ReadListing(std::span(sound).first(at)), std::nullopt) << at;
        for (const std::byte value : {std::byte{0}, std::byte{0x7F}, std::byte{0xFF}}) {
            auto damaged = sound;
            damaged[at] = value;
            ReadListing(damaged);
        }
    }
}

struct ValueRow {
    const char* name;
    Role role;
    float low, high;
    HostValue host;
    std::vector<float> floats;  // in the engine; a lone whole number for the integer kinds
};

TEST(ControlValues, AreTheEnginesInTheHostsUnitsAndComeBack) {
    const ValueRow kRows[] = {
        {"number", Role::number, -10, 30, {0.25}, {0}},
        {"number beyond its range", Role::number, 1, 3, {7}, {3}},
        {"number that is NaN", Role::number, 1, 3, {std::numeric_limits<double>::quiet_NaN()}, {1}},
        {"range without an extent", Role::number, 5, 5, {0}, {5}},
        {"angle", Role::angle, -360, 360, {0.625}, {90}},
        {"check box", Role::checkBox, 0, 1, {1}, {1}},
        {"popup, the third of five", Role::popup, 1, 5, {0.5}, {3}},
        {"popup, nearest", Role::popup, 1, 3, {0.8}, {3}},
        {"color", Role::color, 0, 1, {0.25, 0.5, 1}, {0.25f, 0.5f, 1}},
        {"alpha", Role::alpha, 0, 1, {0.5}, {0, 0, 0, 0.5f}},
        {"point", Role::point, 0, 1, {0.5, 0.25}, {320, 90}},
        {"point outside", Role::point, 0, 1, {-0.5, 2}, {-320, 720}},
        {"depth", Role::depth, -100, 100, {0.75}, {0, 0, 50}},
    };
    for (const ValueRow& row : kRows) {
        ListedControl control;
        control.role = row.role;
        control.low = row.low;
        control.high = row.high;
        Parameter parameter;
        SetHostValue(parameter, control, row.host, {640, 360});
        const bool isWhole = row.role == Role::checkBox || row.role == Role::popup;
        for (std::size_t i = 0; i < row.floats.size(); ++i)
            EXPECT_EQ(isWhole ? static_cast<float>(parameter.intValue()) : parameter.floatAt(static_cast<int>(i)),
                      row.floats[i])
                << row.name;
        Parameter again;
        SetHostValue(again, control, HostValueOf(parameter, control, {640, 360}), {640, 360});
        EXPECT_EQ(std::memcmp(again.value, parameter.value, sizeof again.value), 0) << row.name;
    }
}

TEST(FramePixels, AnOutputOfAnotherSizeIsCroppedOrCenteredAsHostsDo) {
    struct Row {
        FrameSize output, frame;
        Pixels expected;  // pixels of the output by row and column from its top left, 0: none
    };
    const Row kRows[] = {
        {{2, 2}, {2, 2}, {0x11, 0x12, 0x21, 0x22}}, {{4, 3}, {2, 2}, {0x12, 0x13, 0x22, 0x23}},  // 3 / 2 - 2 / 2 is 0
        {{5, 5}, {2, 2}, {0x22, 0x23, 0x32, 0x33}}, {{1, 1}, {3, 2}, {0, 0, 0, 0, 0x11, 0}},
        {{2, 4}, {4, 1}, {0, 0x31, 0x32, 0}},       {{0, 7}, {1, 1}, {0}},
    };
    for (const Row& row : kRows) {
        Pixels output(row.output.pixels());
        for (std::uint32_t y = 0; y < row.output.height; ++y)
            for (std::uint32_t x = 0; x < row.output.width; ++x)  // alpha first, the bottom row first
                output[y * row.output.width + x] = ((row.output.height - y) * 16 + x + 1) << 8;
        Pixels frame(row.frame.pixels(), 0xDDDDDDDD);
        WriteFrame(output.data(), row.output, frame.data(), row.frame, {1, row.frame.height});
        WriteFrame(output.data(), row.output, frame.data(), row.frame, {0, 1});
        EXPECT_EQ(frame, row.expected) << row.output.width << "x" << row.output.height;
    }
}

}  // namespace
}  // namespace quillon::test
