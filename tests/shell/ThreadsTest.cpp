// Eight threads that drive sixteen instances at once give the frames that one thread gives.

#include <atomic>
#include <random>
#include <thread>

#include "shell/ShellTest.h"

namespace quillon::test {
namespace {

constexpr int kThreads = 8;
constexpr int kInstances = 16;
constexpr int kSteps = 40;

// The picture depends on the instance's value and on its own input; script variables are shared by all of them.
const Files kTintFiles{{"tint.frag",
                        "uniform sampler2D sInput0; uniform float v;\n"
                        "void main() { gl_FragColor = texture2D(sInput0, gl_TexCoord[0].st) * v; }\n"}};
const char* const kTint =
    "var s, v; function setup() { s = QL_initShader('tint'); v = QL_initParam('v', 1, 'V'); }"
    "function preRender(w, h) { if (QL_getParamValue(v) > 0.5) QL_setOutputExtent(w + 2, h); }"
    "function draw() { QL_setShaderParamVal(s, 'sInput0', QL_getSequenceTexture()); QL_setShaderParam(s, v);"
    " QL_renderShader(s, QL_getSequenceRT(), true); }";

class Threads : public ShellTest, public ::testing::WithParamInterface<HostKind> {
protected:
    static Bytes frame(HostInstance& instance, int number) {
        const HostSession& session = instance.session;
        const FrameRequest request{Picture(session, number % 3 == 0 ? 8 : number % 3 == 1 ? 16 : 32, 4 + number % 2)};
        const FrameResult result = instance.session.renderFrame(instance, request);
        EXPECT_EQ(result.error(), 0);
        return result.output ? result.output->tightBytes() : Bytes();
    }
};

TEST_P(Threads, GiveTheFramesOfOne) {
    const bool isPremiere = GetParam() == HostKind::premiere;
    // What belongs to the thread of the start must not go with it.
    HostSession* started = nullptr;
    std::thread([&] { started = &start(kTint, isPremiere ? Premiere() : AfterEffects(), kTintFiles); }).join();
    HostSession& session = *started;
    std::vector<HostInstance*> driven;
    std::vector<Bytes> wanted;
    for (int i = 0; i < kInstances; ++i) {
        driven.push_back(&session.apply());
        driven.back()->setFloat(1, static_cast<double>(i) / kInstances);
        wanted.push_back(frame(*driven.back(), i));
    }
    const unsigned seed = std::random_device()();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::atomic<int> unlike{0};
    const auto drive = [&](int thread) {
        std::mt19937 random(seed + static_cast<unsigned>(thread));
        for (int step = 0; step < kSteps; ++step) {
            const int number = thread + kThreads * static_cast<int>(random() % (kInstances / kThreads));
            HostInstance*& instance = driven[static_cast<std::size_t>(number)];
            switch (random() % 6) {
                case 0:
                    session.updateParamsUI(*instance);
                    break;
                case 1:
                    session.userChangedParam(*instance, 1);
                    break;
                case 2:
                    session.save(*instance);
                    break;
                case 3: {
                    HostInstance& copy = session.duplicate(*instance);
                    session.remove(*instance);
                    instance = &copy;
                    break;
                }
                default:
                    if (frame(*instance, number) != wanted[static_cast<std::size_t>(number)]) ++unlike;
            }
        }
    };
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) threads.emplace_back(drive, thread);
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(unlike, 0) << "seed " << seed;
}

INSTANTIATE_TEST_SUITE_P(, Threads, ::testing::Values(HostKind::afterEffects, HostKind::premiere),
                         [](const auto& row) { return row.param == HostKind::premiere ? "premiere" : "afterEffects"; });

}  // namespace
}  // namespace quillon::test
