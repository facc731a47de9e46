// Every value that a host can send comes back through an effect that copies, bit for bit.

#include <bit>
#include <cmath>

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

constexpr A_long kSide = 182;  // 182 * 182 * 4 channels hold more than twice the 16-bit values

template <class Channel, class Make>
Bytes Fill(std::size_t distinct, Make make) {
    std::vector<Channel> channels(std::size_t{4} * kSide * kSide);
    for (std::size_t i = 0; i < channels.size(); ++i) channels[i] = make(i % distinct);
    return BytesOf(channels);
}

// Finite floats over all exponents, both signs, zeros and the largest; of the subnormals none, which drivers may flush.
float SpreadFloat(std::size_t i) {
    constexpr float kEnds[] = {0.0f, -0.0f, 3.40282347e38f, -3.40282347e38f, 1.17549435e-38f, 1.0f, 0.5f, 65504.0f};
    if (i < std::size(kEnds)) return kEnds[i];
    const auto bits = static_cast<std::uint32_t>(i) * 2654435761u;
    const std::uint32_t exponent = bits >> 23 & 0xFF;
    if (exponent == 0 || exponent == 0xFF) return 1.0f + static_cast<float>(i);
    return std::bit_cast<float>(bits);
}

Bytes AllValues(int depth) {
    if (depth == 8) return Fill<std::uint8_t>(256, [](std::size_t i) { return static_cast<std::uint8_t>(i); });
    if (depth == 16) return Fill<std::uint16_t>(32769, [](std::size_t i) { return static_cast<std::uint16_t>(i); });
    return Fill<float>(std::size_t{4} * kSide * kSide, SpreadFloat);
}

Bytes Expected(int depth) {
    Bytes bytes = AllValues(depth);
    if (depth != 16) return bytes;
    std::vector<std::uint16_t> words = ChannelsOf<std::uint16_t>(bytes);
    for (std::uint16_t& word : words)
        if (word == 16385) word = 16384;
    return BytesOf(words);
}

class Exactness : public ShellTest, public ::testing::WithParamInterface<std::tuple<int, int>> {};

// After Effects' classic route asks for one row and one column less than its input has: the script asks for two more.
// Premiere Pro draws one row and one column less, at the top left: its layer is one larger each way.
TEST_P(Exactness, EveryRouteReturnsEveryValue) {
    const auto [depth, padding] = GetParam();
    for (HostSettings settings : kHosts) {
        settings.rowPaddingPixels = padding;
        const bool isPremiere = settings.kind == HostKind::premiere;
        const bool shrinks = settings.routeInUse() == Route::classic && !isPremiere;
        HostSession& session =
            start(CopyScript(true) + (shrinks ? "function preRender(w, h) { QL_setOutputExtent(w + 2, h + 1); }" : ""),
                  settings, kCopyFiles);
        FrameRequest request{WorldOf(session, kSide, kSide, AllValues(depth))};
        if (isPremiere) request.layerWidth = request.layerHeight = kSide + 1;
        const FrameResult frame = session.renderFrame(session.apply(), request);
        EXPECT_EQ(frame.error(), 0);
        EXPECT_TRUE(frame.output->tightBytes() == Expected(depth));
    }
}

INSTANTIATE_TEST_SUITE_P(, Exactness, ::testing::Combine(::testing::Values(8, 16, 32), ::testing::Values(0, 3)));

// Channels of 16 bits on their way out, by a shader that draws GL's own words.
TEST_F(ShellTest, SixteenBitsAreFoldedWithTheUpperHalfRoundedUp) {
    const struct {
        int drawn, host;
    } kCases[] = {{1, 0}, {2, 1}, {32768, 16384}, {32769, 16385}, {65534, 32768}, {65535, 32768}};
    for (const auto& [drawn, hostValue] : kCases) {
        HostSession& session = start(
            "var s; function setup() { s = QL_initShader('s', 'uniform float v; void main() {"
            " gl_FragColor = vec4(v / 65535.0); }'); } function draw() { QL_setShaderParamVal(s, 'v', " +
            std::to_string(drawn) + "); QL_renderShader(s, QL_getSequenceRT(), true); }");
        const FrameResult frame = session.renderFrame(session.apply(), {session.newWorld(2, 2, 16)});
        EXPECT_THAT(ChannelsOf<std::uint16_t>(frame.output->tightBytes()), Each(hostValue)) << drawn;
    }
}

}  // namespace
}  // namespace quillon::test
