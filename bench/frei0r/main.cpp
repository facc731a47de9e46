// Measures, as a multiple of a frame through the effect module (frame/module of bench_frame) in the same run:
//
//   frei0r/frame/8/WIDTHxHEIGHT   one frame of an identity effect through f0r_update of the packed plug-in
//
// Both render the same picture, and both results are compared with it byte for byte. Rounds alternate, and each
// gives its own ratio, so that whatever else the machine does falls on both sides of it; the median counts.

#include <dlfcn.h>

#include <algorithm>
#include <bit>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include "ModuleFrame.h"

namespace quillon::bench {

namespace {

constexpr int kWarmUp = 3;

struct Case {
    FrameSize size;
    double aim;  // the most that the ratio should be; 0: none is set
    int rounds;
};
constexpr Case kCases[] = {{{1920, 1080, 8}, 1.10, 60}, {{640, 360, 8}, 0, 200}};

// The plug-in as a host has it.
class PluginFrame {
public:
    PluginFrame(const std::filesystem::path& file, const FrameSize& size) : handle(dlopen(file.c_str(), RTLD_NOW)) {
        if (!handle) throw std::runtime_error(dlerror());
        const auto construct = reinterpret_cast<void* (*)(unsigned, unsigned)>(dlsym(handle, "f0r_construct"));
        update = reinterpret_cast<Update>(dlsym(handle, "f0r_update"));
        instance = construct(size.width, size.height);
    }
    ~PluginFrame() {
        reinterpret_cast<void (*)(void*)>(dlsym(handle, "f0r_destruct"))(instance);
        dlclose(handle);
    }
    PluginFrame(const PluginFrame&) = delete;
    PluginFrame& operator=(const PluginFrame&) = delete;

    // Gives the milliseconds that the frame took.
    double render(const std::uint32_t* input, std::uint32_t* output) const {
        const auto start = std::chrono::steady_clock::now();
        update(instance, 0, input, output);
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    }

private:
    using Update = void (*)(void*, double, const std::uint32_t*, std::uint32_t*);
    void* handle;
    Update update = nullptr;
    void* instance = nullptr;
};

double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

// The identity effect gives its input upside down.
std::vector<std::uint32_t> TurnedOver(const std::vector<std::uint32_t>& pixels, std::size_t width) {
    std::vector<std::uint32_t> turned(pixels.size());
    for (std::size_t i = 0; i < pixels.size(); i += width)
        std::copy_n(pixels.end() - static_cast<std::ptrdiff_t>(i + width), width,
                    turned.begin() + static_cast<std::ptrdiff_t>(i));
    return turned;
}

// False when one of the two renders a wrong picture.
bool Measure(ModuleFrame& module, const std::filesystem::path& plugin, const Case& entry) {
    const FrameSize& size = entry.size;
    std::vector<std::uint32_t> argb(size.bytes() / 4), rgba(argb.size());
    std::uint32_t state = 1;
    for (std::size_t i = 0; i < argb.size(); ++i) {
        argb[i] = state = state * 1664525 + 1013904223;
        rgba[i] = std::rotr(argb[i], 8);
    }
    std::vector<std::uint32_t> fromModule(argb.size()), fromPlugin(argb.size());
    std::vector<std::uint32_t> frameInput(rgba.size());
    const PluginFrame frame(plugin, size);
    std::vector<double> moduleTimes, pluginTimes, ratios;
    for (int round = -kWarmUp; round < entry.rounds; ++round) {
        const double moduleTime = module.render(size, reinterpret_cast<const std::byte*>(argb.data()),
                                                reinterpret_cast<std::byte*>(fromModule.data()));
        // As the module's input is: a host has just written the frame.
        std::ranges::copy(rgba, frameInput.begin());
        const double pluginTime = frame.render(frameInput.data(), fromPlugin.data());
        if (round < 0) continue;
        moduleTimes.push_back(moduleTime);
        pluginTimes.push_back(pluginTime);
        ratios.push_back(pluginTime / moduleTime);
    }
    std::printf("frei0r/frame/8/%ux%u: %.3f ms, floor %.3f ms, ratio %.3f", size.width, size.height,
                Median(pluginTimes), Median(moduleTimes), Median(ratios));
    if (entry.aim != 0) std::printf(" (aim %.2f)", entry.aim);
    std::printf("\n");
    return fromPlugin == TurnedOver(rgba, size.width) && fromModule == TurnedOver(argb, size.width);
}

}  // namespace

}  // namespace quillon::bench

int main() {
    using namespace quillon::bench;
    ModuleFrame module(QUILLON_IDENTITY);
    bool isEqual = true;
    for (const Case& entry : kCases) isEqual = Measure(module, QUILLON_IDENTITY_FREI0R, entry) && isEqual;
    if (!isEqual) std::fputs("bench_frei0r: a rendered picture is wrong\n", stderr);
    return isEqual ? 0 : 1;
}
