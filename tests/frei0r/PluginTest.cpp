// The plug-in as a host has it: a file that is loaded, its functions, many instances. Each test has its own process.

#include <EGL/egl.h>
#include <dlfcn.h>
#include <gmock/gmock.h>

#include <fstream>
#include <thread>

#include "Plugin.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

using frei0r::Listing;
using frei0r::PluginType;
using frei0r::Role;

Files EffectOf(const std::string& script) {
    return {{"fx.js", script}, {"copy.frag", kCopyFragment}, {"config.xml", kConfig}};
}

Pixels SomePixels(std::size_t count, std::uint32_t seed = 1) {
    Pixels pixels(count);
    for (std::uint32_t& pixel : pixels) pixel = seed = seed * 1664525 + 1013904223;
    return pixels;
}

// The address sanitizer keeps freed memory and a record of each thread, and takes its time. Its leak check watches the
// rest.
#ifdef __SANITIZE_ADDRESS__
constexpr int kInstances = 100;
constexpr long kMostKilobytes = 100000;
#else
constexpr int kInstances = 1000;
constexpr long kMostKilobytes = 4000;
#endif

long ResidentKilobytes() {
    std::ifstream status("/proc/self/status");
    std::string word;
    while (status >> word && word != "VmRSS:") {
    }
    long kilobytes = 0;
    status >> kilobytes;
    return kilobytes;
}

// Two plug-ins in one process keep apart: the second one turns the picture over.
TEST(Plugin, HandsPixelsThroughTheEffectToTheByte) {
    const PluginFile file(EffectOf(CopyScript(/*flip=*/true)));
    const PluginFile otherFile(EffectOf(CopyScript(/*flip=*/false)));
    Plugin plugin(file.path());
    Plugin other(otherFile.path());
    void* const kept = other.construct(1, 2);
    EXPECT_EQ(other.update(kept, 2, {1, 2}), (Pixels{2, 1}));
    for (const auto& [width, height] : {std::pair{1u, 1u}, {5u, 3u}, {641u, 359u}, {1921u, 1081u}}) {
        const Pixels picture = SomePixels(std::size_t{width} * height);
        EXPECT_EQ(plugin.frame(width, height, picture), picture) << width;
        EXPECT_EQ(other.update(kept, 2, {3, 4}), (Pixels{4, 3}));
    }
    other.destruct(kept);
}

// The input comes back, transparent black where there is none, and the process lives.
TEST(Plugin, AFrameThatCannotBeRenderedIsTheInput) {
    const std::string copy = CopyScript(/*flip=*/true);
    const std::pair<const char*, std::string> kRows[] = {
        {"script error", copy + "draw = function () { nothing(); };"},
        {"script that does not parse", "var = ;"},
        {"shader error", copy + "var own = setup; setup = function () { own(); QL_initShader('s', 'nonsense'); };"},
        {"huge output", copy + "function preRender() { QL_setOutputExtent(1 << 14, 1 << 14); }"},
        {"impossible output", copy + "function preRender() { QL_setOutputExtent(-1, 1 << 30); }"},
        {"released output", copy + "draw = function () { QL_release(QL_getSequenceRT()); };"},
    };
    const Pixels picture = SomePixels(12);
    for (const auto& [name, script] : kRows) {
        const PluginFile file(EffectOf(script), {}, name);
        Plugin plugin(file.path());
        EXPECT_EQ(plugin.frame(4, 3, picture), picture) << name;
        EXPECT_EQ(plugin.frame(4, 3, {}), Pixels(12)) << name;
    }
    Plugin bare(PluginTemplate());
    EXPECT_EQ(bare.frame(4, 3, picture), picture);
    EXPECT_EQ(bare.construct(0, 3), nullptr);
}

TEST(PluginDeathTest, WithoutOpenGLLoadsAndHandsFramesOn) {
    ::testing::FLAGS_gtest_death_test_style = "threadsafe";
    const auto run = [] {
        setenv("LIBGL_DRIVERS_PATH", "none", 1);
        const PluginFile file(EffectOf(CopyScript(/*flip=*/false)));
        Plugin plugin(file.path());
        std::_Exit(plugin.frame(4, 3, SomePixels(12)) == SomePixels(12) ? 0 : 1);
    };
    EXPECT_EXIT(run(), ::testing::ExitedWithCode(0), "");
}

TEST(Plugin, IsListedFromItsFileAndUnloadedAgain) {
    Listing listing{"Some effect", "What it does", PluginType::source, 3, 250, frei0r::kNoLayer, {}};
    listing.controls.push_back({"Place", "in the frame", Role::point, 0, 0, 1, {}});
    const PluginFile file({{"fx.js", "while (true) {}"}}, listing);
    {
        const Plugin plugin(file.path());
        frei0r::PluginInfo info{};
        plugin.find<void(frei0r::PluginInfo*)>("f0r_get_plugin_info")(&info);
        EXPECT_STREQ(info.name, "Some effect");
        EXPECT_EQ(info.pluginType, 1);
        EXPECT_EQ(info.majorVersion * 1000 + info.minorVersion, 3250);
        ASSERT_EQ(info.paramCount, 1);
        const auto paramInfo = plugin.find<void(frei0r::ParamInfo*, int)>("f0r_get_param_info");
        frei0r::ParamInfo param{};
        paramInfo(&param, 0);
        EXPECT_STREQ(param.name, "Place");
        EXPECT_EQ(param.type, 3);
        paramInfo(&param, 1);
        EXPECT_STREQ(param.name, "");
    }
    EXPECT_EQ(dlopen(file.path().c_str(), RTLD_NOW | RTLD_NOLOAD), nullptr);
}

// What a control is worth reaches the shader: the first is the script's default, then what the host has set.
TEST(Plugin, ControlsAreTheScriptsUntilTheHostSetsThem) {
    const char* const kScript =
        "var s, p, c; function setup() { p = QL_initParam('p', QL_Type.FLOAT, 'P'); QL_setParamValue(p, 0.2);"
        " c = QL_initParam('c', QL_Type.COLOR, 'C'); QL_setParamValue(c, [255, 0, 51, 102]);"
        " s = QL_initShader('s', 'uniform float p; uniform vec4 c; void main() { gl_FragColor = vec4(p, c.gba); }'); }"
        "function draw() { QL_setShaderParam(s, p); QL_setShaderParam(s, c); QL_setParamValue(p, 0.9);"
        " QL_renderShader(s, QL_getSequenceRT(), true); }";
    const auto declared = [](std::array<float, 4> values) { return std::bit_cast<std::array<std::byte, 16>>(values); };
    Listing listing;
    listing.controls = {{"P", "", Role::number, 0, 0, 2, declared({0.2f, 0, 0, 0})},
                        {"C", "", Role::color, 1, 0, 1, declared({255, 0, 51, 102})},
                        {"C alpha", "", Role::alpha, 1, 0, 1, declared({255, 0, 51, 102})},
                        {"of no use", "", Role::popup, 0, 1, 3, {}},
                        {"not there", "", Role::number, 9, 0, 1, {}}};
    const PluginFile file(EffectOf(kScript), listing);
    Plugin plugin(file.path());
    const auto set = plugin.find<void(void*, const void*, int)>("f0r_set_param_value");
    const auto get = plugin.find<void(void*, void*, int)>("f0r_get_param_value");
    void* const first = plugin.construct(1, 1);
    void* const second = plugin.construct(1, 1);
    double number = 0;
    get(first, &number, 0);
    EXPECT_FLOAT_EQ(static_cast<float>(number), 0.1f);
    frei0r::Color color{};
    get(first, &color, 1);
    EXPECT_FLOAT_EQ(color.blue, 0.2f);
    EXPECT_EQ(plugin.update(first, 1, {0}), Pixels{0x66330033});
    number = 0.3;
    set(first, &number, 0);
    set(first, &number, 99);
    set(first, nullptr, 2);
    color = {0, 0.8f, 0.4f};
    set(first, &color, 1);
    EXPECT_EQ(plugin.update(first, 1, {0}), Pixels{0x6666CC99});
    EXPECT_EQ(plugin.update(second, 1, {0}), Pixels{0x66330033});
    EXPECT_EQ(plugin.update(first, 1, {0}), Pixels{0x6666CC99});
    get(first, &number, 0);
    EXPECT_EQ(number, 0.3);
    plugin.destruct(first);
    // A new instance knows nothing of the one that is gone.
    EXPECT_EQ(plugin.frame(1, 1, {0}), Pixels{0x66330033});
    plugin.destruct(second);
}

TEST(Plugin, AMixersSecondInputIsTheLayer) {
    const char* const kScript =
        "var s, map; function setup() { map = QL_initParam('map', QL_Type.LAYER, 'Map');"
        " s = QL_initShader('s', 'uniform sampler2D map; void main() { gl_FragColor = texture2D(map, "
        "gl_TexCoord[0].st); }'); }"
        "function draw() { QL_setShaderParam(s, map); QL_renderShader(s, QL_getSequenceRT(), true); }";
    Listing listing;
    listing.type = PluginType::mixer2;
    listing.layer = 0;
    const PluginFile file(EffectOf(kScript), listing);
    Plugin plugin(file.path());
    EXPECT_EQ(plugin.frame(1, 2, {1, 2}, {0x80123456, 0xFF654321}), (Pixels{0x80123456, 0xFF654321}));
}

// Sizes and order of ends differ; each thread's frames are its own, and the GL context of a host stays current there.
TEST(Plugin, InstancesOnManyThreadsShareTheEngineAndLeaveTheHostsContextAlone) {
    const PluginFile file(EffectOf(CopyScript(/*flip=*/true)));
    Plugin plugin(file.path());
    const auto work = [&plugin](std::uint32_t width) {
        EGLDisplay display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        EGLConfig config = nullptr;
        EGLint count = 0;
        eglInitialize(display, nullptr, nullptr);
        eglBindAPI(EGL_OPENGL_ES_API);
        eglChooseConfig(display, nullptr, &config, 1, &count);
        const EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
        EXPECT_TRUE(eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, context));
        for (int round = 0; round < 20; ++round) {
            void* const early = plugin.construct(width, 7);
            void* const late = plugin.construct(7, width);
            const Pixels picture = SomePixels(width * 7, static_cast<std::uint32_t>(round));
            EXPECT_EQ(plugin.update(early, picture.size(), picture), picture);
            plugin.destruct(round % 2 == 0 ? early : late);
            if (round % 2 != 0) {
                EXPECT_EQ(plugin.update(early, picture.size(), picture), picture);
            }
            plugin.destruct(round % 2 == 0 ? late : early);
            EXPECT_EQ(eglGetCurrentContext(), context);
            EXPECT_EQ(eglQueryAPI(), static_cast<EGLenum>(EGL_OPENGL_ES_API));
        }
        eglMakeCurrent(display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    };
    std::vector<std::thread> threads;
    for (std::uint32_t width : {3u, 64u, 200u}) threads.emplace_back(work, width);
    for (std::thread& thread : threads) thread.join();
}

// With another instance alive and with none, which ends the engine each time; and loaded anew, as filter graphs do.
TEST(Plugin, AThousandInstancesLeaveMemoryLevel) {
    const PluginFile file(EffectOf(CopyScript(/*flip=*/true)));
    const Pixels picture = SomePixels(320 * 180);
    Plugin keeper(file.path());
    const auto cycle = [&] {
        Plugin plugin(file.path());
        EXPECT_EQ(plugin.frame(320, 180, picture), picture);
    };
    const auto growth = [&](int rounds) {
        const long before = ResidentKilobytes();
        for (int i = 0; i < rounds; ++i) cycle();
        return ResidentKilobytes() - before;
    };
    void* const other = keeper.construct(320, 180);
    keeper.update(other, picture.size(), picture);
    growth(kInstances / 20);
    EXPECT_LT(growth(kInstances * 7 / 10), kMostKilobytes);
    keeper.destruct(other);
    growth(kInstances / 20);
    EXPECT_LT(growth(kInstances / 5), kMostKilobytes);
}

}  // namespace
}  // namespace quillon::test
