// Imported effects in hosts that go their own way: back in time, several instances, smaller previews, other depths.

#include <cstring>
#include <filesystem>

#include "ImportTest.h"
#include "host/HostSession.h"

namespace quillon::test {

namespace {

using Hosts = ImportTest;

// Counts the frames since the state began, and says what it was given.
constexpr const char* kCounter =
    R"(/*{"ISFVSN": "2", "PASSES": [{"TARGET": "state", "PERSISTENT": true, "FLOAT": true}]}*/
void main() {
    float count = FRAMEINDEX == 0 ? 1.0 : IMG_THIS_PIXEL(state).r + 1.0;
    gl_FragColor = vec4(count, float(FRAMEINDEX), TIMEDELTA, 1.0);
})";

TEST_F(Hosts, StateFollowsEachInstanceThroughTime) {
    import("counter", "counter.fs", kCounter);
    ASSERT_EQ(run("pack counter -o " + Module("counter")).status, 0);
    host::HostSession session(host::EffectModule(pathOf(Module("counter"))));
    session.start();
    host::HostInstance* const instances[] = {&session.apply(), &session.apply()};
    const float step = static_cast<float>(instances[0]->timeStep) / static_cast<float>(instances[0]->timeScale);
    const struct {
        const char* what;
        int instance, frame, size;
        float count, delta;
    } kSteps[] = {
        {"the first", 0, 0, 8, 1, 0},
        {"the next", 0, 1, 8, 2, step},
        {"the same again", 0, 1, 8, 2, step},
        {"and again", 0, 1, 8, 2, step},
        {"on from there", 0, 2, 8, 3, step},
        {"another instance, later", 1, 9, 8, 1, 0},
        {"the first instance", 0, 3, 8, 4, step},
        {"the other one", 1, 11, 8, 2, 2 * step},
        {"back", 0, 1, 8, 1, 0},
        {"on from there", 0, 2, 8, 2, step},
        {"another size", 0, 3, 6, 1, 0},
    };
    for (const auto& [what, instance, frame, size, count, delta] : kSteps) {
        host::HostInstance& played = *instances[instance];
        played.currentTime = frame * played.timeStep;
        host::FrameRequest request;
        request.input = session.newWorld(size, size, 32);
        const host::FrameResult result = session.renderFrame(played, request);
        ASSERT_EQ(result.error(), PF_Err_NONE) << what;
        std::array<float, 4> pixel{};  // alpha first
        std::memcpy(pixel.data(), result.output->tightBytes().data(), sizeof pixel);
        EXPECT_EQ(pixel[1], count) << what;
        EXPECT_EQ(pixel[2], count - 1) << what;
        EXPECT_NEAR(pixel[3], delta, 1e-5f) << what;
    }
    EXPECT_EQ(session.violations(), std::vector<std::string>{});
}

TEST_F(Hosts, SizesAndPointsFollowPreviewsAtEveryDepth) {
    import("places", "places.fs", R"(/*{"INPUTS": [
        {"NAME": "spot", "TYPE": "point2D", "MIN": [0, 0], "MAX": [1, 1]},
        {"NAME": "pixels", "TYPE": "point2D", "DEFAULT": [0, 0], "MAX": [400, 400]}],
        "PASSES": [{"TARGET": "half", "WIDTH": "$WIDTH/2"}, {}]}*/
        void main() {
            if (PASSINDEX == 0) gl_FragColor = vec4(RENDERSIZE / 16.0, 0.0, 1.0);
            else gl_FragColor = gl_FragCoord.x < 1.0 ? vec4(RENDERSIZE, pixels) / 16.0
                                : gl_FragCoord.x < 2.0 ? vec4(spot, IMG_THIS_PIXEL(half).xy)
                                                       : vec4(gl_FragCoord.xy / 16.0, isf_FragNormCoord);
        })");
    ASSERT_EQ(run("chart -o chart.png --size 8x6").status, 0);
    for (const int depth : {8, 16, 32}) {
        for (const int part : {1, 2}) {
            SCOPED_TRACE("depth " + std::to_string(depth) + ", 1/" + std::to_string(part));
            const ToolRun result =
                run("render places -i chart.png -o out.argb --set spot=2,1.5 --set pixels=4,2 --depth " +
                    std::to_string(depth) + " --downsample " + std::to_string(part));
            ASSERT_EQ(result.status, 0) << result.err;
            std::vector<float> samples;
            if (depth == 32) samples = readSamples<float>("out.argb");
            if (depth == 16) {
                for (const std::uint16_t word : readSamples<std::uint16_t>("out.argb"))
                    samples.push_back(static_cast<float>(word) / 32768);
            }
            if (depth == 8) {
                for (const std::uint8_t byte : readSamples<std::uint8_t>("out.argb"))
                    samples.push_back(static_cast<float>(byte) / 255);
            }
            const int width = kWidth / part, height = kHeight / part;
            ASSERT_EQ(samples.size(), static_cast<std::size_t>(width * height * 4));
            const float w = static_cast<float>(width), h = static_cast<float>(height);
            for (int y = 0; y < height; ++y) {
                for (int x = 0; x < width; ++x) {
                    const float u = static_cast<float>(x) + 0.5f, v = static_cast<float>(y) + 0.5f;
                    const Color wanted = x == 0   ? Color{w / 16, h / 16, 4.0f / part / 16, (h - 2.0f / part) / 16}
                                         : x == 1 ? Color{0.25f, 0.75f, w / 32, h / 16}
                                                  : Color{u / 16, v / 16, u / w, v / h};
                    const float* const found = &samples[static_cast<std::size_t>((height - 1 - y) * width + x) * 4];
                    for (std::size_t i = 0; i < 4; ++i)
                        EXPECT_NEAR(found[(i + 1) % 4], wanted[i], 0.003f) << x << " " << y << " " << i;
                }
            }
        }
    }
}

TEST_F(Hosts, TargetsOfTheFirstVersionPersist) {
    for (const char* buffers : {R"(["kept"])", R"({"kept": {"WIDTH": 2, "HEIGHT": "1+1", "FLOAT": true}})"}) {
        SCOPED_TRACE(buffers);
        std::filesystem::remove_all(pathOf("old"));
        import("old", "old.fs",
               std::string(R"(/*{"PERSISTENT_BUFFERS": )") + buffers + R"(, "PASSES": [{"TARGET": "kept"}, {}]}*/
            void main() {
                if (PASSINDEX == 0) gl_FragColor = IMG_NORM_PIXEL(kept, vv_FragNormCoord) + vec4(0.2);
                else gl_FragColor = IMG_THIS_PIXEL(kept);
            })");
        const auto frames = renderFrames("old", 3);
        for (int i = 0; i < 3; ++i) {
            const float value = 0.2f * static_cast<float>(i + 1);
            ExpectPicture(frames[static_cast<std::size_t>(i)], [value](int, int) {
                return Color{value, value, value, value};
            });
        }
    }
}

}  // namespace

}  // namespace quillon::test
