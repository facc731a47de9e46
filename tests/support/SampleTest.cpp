#include "support/SampleTest.h"

#include <array>
#include <cmath>
#include <cstring>

#include "packer/EffectFolder.h"
#include "script/Scripting.h"
#include "support/BuiltFiles.h"
#include "support/Pixels.h"

namespace quillon::test {

namespace {

void Fail(const ScriptError& error) {
    ADD_FAILURE() << error.message;
}

// At each depth, one in the host's range.
template <class Channel>
constexpr float kOne = std::is_same_v<Channel, std::uint8_t> ? 255.0f
                       : std::is_same_v<Channel, float>      ? 1.0f
                                                             : 32768.0f;

template <class Channel>
Bytes ToHost(const std::vector<float>& samples) {
    std::vector<Channel> channels;
    for (const float sample : samples) {
        const float scaled = sample * kOne<Channel>;
        channels.push_back(static_cast<Channel>(std::is_integral_v<Channel> ? std::round(scaled) : scaled));
    }
    return BytesOf(channels);
}

template <class Channel>
std::vector<float> FromHost(const Bytes& bytes) {
    std::vector<float> samples;
    for (const Channel channel : ChannelsOf<Channel>(bytes))
        samples.push_back(static_cast<float>(channel) / kOne<Channel>);
    return samples;
}

}  // namespace

SampleTest::~SampleTest() {
    Scripting::SetErrorObserver(nullptr);
}

void SampleTest::load(const std::string& name) {
    Scripting::SetErrorObserver(Fail);
    Files files;
    std::string script;
    for (const PackageFile& file : ReadEffectFiles(ListEffectFolder(SourceFolder() / "effects" / name))) {
        const std::string content(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
        if (file.name == "fx.js")
            script = content;
        else
            files.emplace_back(file.name, content);
    }
    start(script, files);
    ASSERT_EQ(shaderErrors(), "");
}

void SampleTest::set(const std::string& uniform, float value) {
    std::int32_t word;
    std::memcpy(&word, &value, sizeof word);
    set(uniform, word);
}

void SampleTest::set(const std::string& uniform, std::int32_t value) {
    const std::array<std::int32_t, 4> words = {value};
    for (std::uint32_t i = 0; i < engine.parameterCount(); ++i) {
        if (engine.parameterInfo(i)->uniformName != uniform) continue;
        engine.setParameterValue(i, words.data());
        return;
    }
    FAIL() << "no control " << uniform;
}

Picture SampleTest::render(const Picture& input, std::uint32_t bitDepth, double timeSeconds) {
    const float middle[4] = {static_cast<float>(input.width) / 2, static_cast<float>(input.height) / 2, 0, 0};
    for (std::uint32_t i = 0; i < engine.parameterCount(); ++i)
        if (engine.parameterInfo(i)->kind == POINT2D) engine.setParameterValue(i, middle);

    Picture result;
    engine.lockGL();
    engine.preRender(input.width, input.height, &result.width, &result.height);
    const Bytes bytes = bitDepth == 8    ? ToHost<std::uint8_t>(input.samples)
                        : bitDepth == 16 ? ToHost<std::uint16_t>(input.samples)
                                         : ToHost<float>(input.samples);
    const auto upload = [&](std::uint32_t layer) {
        engine.setLayerPixels(layer, bytes.data(), input.width, input.height, bitDepth,
                              std::size_t{input.width} * bitDepth / 2);
    };
    upload(kInputLayer);
    for (std::uint32_t i = 0; i < engine.parameterCount(); ++i)
        if (engine.parameterInfo(i)->kind == LAYER) upload(i);
    engine.unlockGL();
    const Bytes mapped = frame(result.width, result.height, bitDepth, {}, timeSeconds);
    const Bytes upright = ReversedRows(InHostRange(mapped, bitDepth), result.height);
    result.samples = bitDepth == 8    ? FromHost<std::uint8_t>(upright)
                     : bitDepth == 16 ? FromHost<std::uint16_t>(upright)
                                      : FromHost<float>(upright);
    return result;
}

}  // namespace quillon::test
