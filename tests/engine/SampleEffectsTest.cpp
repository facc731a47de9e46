// The sample effects run: at every depth, at several sizes, and with instances that take turns.

#include <cstring>
#include <vector>

#include <gmock/gmock.h>

#include "packer/EffectFolder.h"
#include "script/Scripting.h"
#include "support/EngineTest.h"

namespace quillon::test {

namespace {

std::vector<std::string> scriptErrors;

void collect(const ScriptError& error) {
    scriptErrors.push_back(error.message);
}

struct EffectCase {
    const char* name;
};

void PrintTo(const EffectCase& entry, std::ostream* out) {
    *out << entry.name;
}

class SampleEffect : public EngineTest, public ::testing::WithParamInterface<EffectCase> {
protected:
    void SetUp() override {
        Scripting::SetErrorObserver(collect);
        Files files;
        std::string script;
        const std::filesystem::path folder = std::filesystem::path(QUILLON_SOURCE) / "effects" / GetParam().name;
        for (const PackageFile& file : ReadEffectFolder(folder)) {
            const std::string content(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
            if (file.name == "fx.js")
                script = content;
            else
                files.emplace_back(file.name, content);
        }
        start(script, files);
        ASSERT_EQ(shaderErrors(), "");
    }

    // A frame over mid grey, opaque, in this depth; the size is the script's.
    std::vector<std::byte> render(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth) {
        // Points come from a host in pixels: all of them to the middle.
        const float middle[4] = {static_cast<float>(width) / 2, static_cast<float>(height) / 2, 0, 0};
        for (std::uint32_t i = 0; i < engine.parameterCount(); ++i)
            if (engine.parameterInfo(i)->kind == POINT2D) engine.setParameterValue(i, middle);
        engine.lockGL();
        engine.preRender(width, height, &outWidth, &outHeight);
        engine.unlockGL();
        const std::size_t channels = std::size_t{width} * height * 4;
        std::vector<std::byte> input(channels * bitDepth / 8);
        for (std::size_t i = 0; i < channels; ++i) {
            const bool isAlpha = i % 4 == 0;
            const auto byte = static_cast<std::uint8_t>(isAlpha ? 255 : 128);
            const auto word = static_cast<std::uint16_t>(isAlpha ? 32768 : 16384);
            const float real = isAlpha ? 1.0f : 0.5f;
            const void* value = bitDepth == 8    ? static_cast<const void*>(&byte)
                                : bitDepth == 16 ? static_cast<const void*>(&word)
                                                 : static_cast<const void*>(&real);
            std::memcpy(input.data() + i * bitDepth / 8, value, bitDepth / 8);
        }
        engine.lockGL();
        engine.setLayerPixels(kInputLayer, input.data(), width, height, bitDepth, std::size_t{width} * bitDepth / 2);
        engine.unlockGL();
        std::vector<std::byte> result = frame(outWidth, outHeight, bitDepth);
        EXPECT_EQ(result.size(), std::size_t{outWidth} * outHeight * bitDepth / 2);
        return result;
    }

    std::uint32_t outWidth = 0;  // of the last frame
    std::uint32_t outHeight = 0;
};

// The middle of the picture stays opaque grey in every sample effect's default settings, give or take its own work.
float alphaOf(const std::vector<std::byte>& picture, std::uint32_t bitDepth, std::size_t pixel) {
    const std::byte* at = picture.data() + pixel * bitDepth / 2;
    if (bitDepth == 8) return static_cast<float>(std::to_integer<int>(*at)) / 255.0f;
    if (bitDepth == 32) {
        float value;
        std::memcpy(&value, at, sizeof value);
        return value;
    }
    std::uint16_t value;
    std::memcpy(&value, at, sizeof value);
    return static_cast<float>(value) / 65535.0f;
}

}  // namespace

TEST_P(SampleEffect, RendersAtEveryDepthAndSize) {
    addInstance();
    for (const std::uint32_t bitDepth : {8u, 16u, 32u}) {
        for (const auto& [width, height] : {std::pair{64u, 36u}, {37u, 21u}, {1u, 1u}, {130u, 7u}}) {
            const auto picture = render(width, height, bitDepth);
            ASSERT_FALSE(picture.empty());
            if (width * height > 1000) {
                const std::size_t middle = std::size_t{outHeight / 2} * outWidth + outWidth / 2;
                EXPECT_NEAR(alphaOf(picture, bitDepth, middle), 1.0f, 0.01f);
            }
        }
    }
    EXPECT_THAT(scriptErrors, ::testing::IsEmpty());
}

TEST_P(SampleEffect, GivesAnInstanceItsOwnPictureWhileAnotherTakesTurns) {
    SequenceHandle* small = addInstance();
    const auto alone = render(48, 32, 32);
    SequenceHandle* large = addInstance();
    for (int turn = 0; turn < 3; ++turn) {
        engine.selectSequence(large);
        render(96, 80, 8);
        engine.selectSequence(small);
        EXPECT_EQ(render(48, 32, 32), alone);
    }
    EXPECT_THAT(scriptErrors, ::testing::IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(, SampleEffect,
                         ::testing::Values(EffectCase{"glow"}, EffectCase{"lens"}, EffectCase{"displace"}),
                         [](const auto& entry) { return std::string(entry.param.name); });

}  // namespace quillon::test
