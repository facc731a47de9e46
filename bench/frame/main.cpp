// Measures, each as a multiple of the bare GL calls of that frame in the same run:
//
//   frame/engine/DEPTH/WIDTHxHEIGHT   one frame of an identity effect through IPlugin: lock, input, draw, read-back
//   frame/module/DEPTH/WIDTHxHEIGHT   the same through EntryPointFunc of the packed module
//
// A texture keeps a CPU copy of what was uploaded, for scripts that make a surface of it. The bare calls make none: the
// second ratio leaves out what such a copy takes by itself, and the aims are for that one.
//
// All sides render the same picture, and their results are compared byte for byte. Rounds alternate, so that whatever
// else the machine does falls on all alike; a ratio is that of the medians.

#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "BareFrame.h"
#include "ModuleFrame.h"
#include "engine/AEQuillon2.h"
#include "host/ModuleLoading.h"
#include "imagelib/HostRange.h"

namespace quillon::bench {

namespace {

struct Case {
    FrameSize size;
    double engineAim;  // the most that the ratio should be; 0: none is set
    double moduleAim;
    int rounds;
};

constexpr Case kCases[] = {
    {{1920, 1080, 8}, 1.05, 1.05, 40}, {{1920, 1080, 16}, 0.70, 0.70, 30}, {{1920, 1080, 32}, 1.05, 1.05, 30},
    {{480, 270, 8}, 1.20, 0, 300},     {{480, 270, 16}, 0, 0, 200},        {{480, 270, 32}, 1.20, 0, 200},
    {{640, 360, 8}, 0, 0, 200},        {{640, 360, 16}, 0, 0, 150},        {{640, 360, 32}, 0, 0, 150},
    {{3840, 2160, 8}, 0, 1.05, 10},    {{3840, 2160, 16}, 0, 0.55, 10},    {{3840, 2160, 32}, 0, 1.05, 10},
};

void RenderThroughEngine(IPlugin& engine, const FrameSize& size, const std::byte* input, std::byte* output) {
    engine.lockGL();
    engine.setLayerPixels(kInputLayer, input, size.width, size.height, size.bitDepth, size.rowBytes());
    engine.draw(0, size.width, size.height, size.bitDepth, 1.0f);
    const auto* mapped = static_cast<const std::byte*>(engine.mapResult());
    for (std::uint32_t y = 0; y < size.height; ++y) {
        const std::byte* from = mapped + y * size.rowBytes();
        std::byte* to = output + (size.height - 1 - y) * size.rowBytes();
        if (size.bitDepth == 16)
            FoldToHostRow(from, to, size.width * std::size_t{4});
        else
            std::memcpy(to, from, size.rowBytes());
    }
    engine.unmapResult(mapped);
    engine.unlockGL();
}

std::vector<std::byte> MakePicture(const FrameSize& size) {
    std::vector<std::byte> picture(size.bytes());
    std::uint32_t state = 1;
    for (std::size_t channel = 0; channel < picture.size() / (size.bitDepth / 8); ++channel) {
        state = state * 1664525 + 1013904223;
        const std::uint32_t random = state >> 16;
        const auto byte = static_cast<std::uint8_t>(random);
        const auto word = static_cast<std::uint16_t>(random % 32769);
        const auto real = static_cast<float>(random) / 65536.0f;
        const void* value = size.bitDepth == 8    ? static_cast<const void*>(&byte)
                            : size.bitDepth == 16 ? static_cast<const void*>(&word)
                                                  : static_cast<const void*>(&real);
        std::memcpy(picture.data() + channel * (size.bitDepth / 8), value, size.bitDepth / 8);
    }
    return picture;
}

template <class Work>
double Milliseconds(Work work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

void Print(const char* what, const FrameSize& size, double time, double copy, double floor, double aim) {
    std::printf("frame/%s/%u/%ux%u: %.3f ms, floor %.3f ms, ratio %.3f, without the copy %.3f", what, size.bitDepth,
                size.width, size.height, time, floor, time / floor, (time - copy) / floor);
    if (aim != 0) std::printf(" (aim %.2f)", aim);
    std::printf("\n");
}

// False when the sides disagree about the picture.
bool Measure(IPlugin& engine, ModuleFrame& module, const Case& entry) {
    const FrameSize& size = entry.size;
    const std::vector<std::byte> input = MakePicture(size);
    std::vector<std::byte> expected(size.bytes());
    std::vector<std::byte> fromEngine(size.bytes());
    std::vector<std::byte> fromModule(size.bytes());
    engine.lockGL();
    auto bare = std::make_unique<BareFrame>(size);
    engine.unlockGL();

    std::vector<std::byte> kept(size.bytes());
    std::vector<double> bareTimes;
    std::vector<double> copyTimes;
    std::vector<double> engineTimes;
    std::vector<double> moduleTimes;
    for (int round = -3; round < entry.rounds; ++round) {  // three rounds to warm up
        engine.lockGL();
        const double bareTime = Milliseconds([&] { bare->render(input.data(), expected.data()); });
        engine.unlockGL();
        const double engineTime =
            Milliseconds([&] { RenderThroughEngine(engine, size, input.data(), fromEngine.data()); });
        const double moduleTime = module.render(size, input.data(), fromModule.data());
        const double copyTime = Milliseconds([&] { std::memcpy(kept.data(), input.data(), size.bytes()); });
        if (round < 0) continue;
        copyTimes.push_back(copyTime);
        bareTimes.push_back(bareTime);
        engineTimes.push_back(engineTime);
        moduleTimes.push_back(moduleTime);
    }
    engine.lockGL();
    bare.reset();
    engine.unlockGL();

    const double floor = Median(bareTimes);
    const double copy = Median(copyTimes);
    Print("engine", size, Median(engineTimes), copy, floor, entry.engineAim);
    Print("module", size, Median(moduleTimes), copy, floor, entry.moduleAim);
    return fromEngine == expected && fromModule == expected && kept == input;
}

}  // namespace

}  // namespace quillon::bench

int main() {
    using namespace quillon;
    // Hosts keep the memory of their pictures. Without this each output of the module would be in fresh pages, whose
    // making counts as the module's time.
    mallopt(M_MMAP_THRESHOLD, 1 << 30);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    // The engine of this program takes only the package from the module, which has its own engine.
    const std::filesystem::path file = QUILLON_IDENTITY;
    std::string reason;
    void* const package = host::LoadModule(file, reason);
    if (!package) {
        std::fprintf(stderr, "bench_frame: %s cannot be loaded: %s\n", file.string().c_str(), reason.c_str());
        return 1;
    }
    IPlugin& engine = AEQuillon2::instance();
    if (!engine.init(package, nullptr)) {
        std::fputs("bench_frame: this system offers no OpenGL\n", stderr);
        return 1;
    }
    SequenceHandle* instance = engine.createSequence();
    engine.selectSequence(instance);
    bool isEqual = true;
    {
        bench::ModuleFrame module(file);
        for (const bench::Case& entry : bench::kCases) isEqual = bench::Measure(engine, module, entry) && isEqual;
    }
    engine.destroySequence(instance);
    if (!isEqual) std::fputs("bench_frame: the sides render different pictures\n", stderr);
    return isEqual ? 0 : 1;
}
