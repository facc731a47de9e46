// Measures, each as a multiple of a floor of the same run:
//
//   encode/png/DEPTH        a picture as PNG, against the library's own encoder: how many times as fast, and the size
//   encode/FORM             a frame of glow in every other form, against PNG of 16 bits: time and size
//   sequence/FORM           20 frames of glow by the tool, against the same frames to .argb
//
// All pictures are the test picture with film grain, 1920x1080. Rounds alternate; a ratio is that of the medians.
// Sequences are written to a temporary folder, which needs 2 GB.

#include <ImfThreading.h>
#include <lodepng.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "cli/pictures/Chart.h"
#include "cli/pictures/PictureFormat.h"
#include "platform/TemporaryPath.h"

namespace quillon::bench {

namespace {

namespace fs = std::filesystem;
using cli::Picture;
using cli::StorageOptions;

constexpr std::uint32_t kWidth = 1920, kHeight = 1080;

double Milliseconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

// Floats in the host's order.
Picture GrainyChart() {
    Picture chart = cli::Convert(cli::DrawChart(kWidth, kHeight), cli::SampleFormat::real, cli::ChannelOrder::argb);
    std::uint32_t state = 1;
    auto* sample = chart.row<float>(0);
    for (std::size_t i = 0; i < chart.pixels.size() / sizeof(float); ++i, ++sample) {
        state = state * 1664525 + 1013904223;
        if (i % 4 != 0)
            *sample = std::clamp(*sample + 0.02f * (static_cast<float>(state >> 8) / 0x1p23f - 1), 0.0f, 1.0f);
    }
    return chart;
}

std::vector<unsigned char> EncodeByLibrary(const Picture& picture, bool isDeep) {
    Picture stored =
        cli::Convert(picture, isDeep ? cli::SampleFormat::word : cli::SampleFormat::byte, cli::ChannelOrder::rgba);
    if (isDeep)
        for (std::size_t i = 0; i < stored.pixels.size(); i += 2) std::swap(stored.pixels[i], stored.pixels[i + 1]);
    std::vector<unsigned char> file;
    lodepng::encode(file, reinterpret_cast<const unsigned char*>(stored.pixels.data()), kWidth, kHeight, LCT_RGBA,
                    isDeep ? 16 : 8);
    return file;
}

void MeasurePng(const Picture& chart, bool isDeep) {
    const Picture picture = cli::Convert(chart, cli::HostFormat(isDeep ? 16 : 8), cli::ChannelOrder::argb);
    std::vector<double> ours, libraries;
    std::size_t ourSize = 0, librarySize = 0;
    for (int round = 0; round < 5; ++round) {
        ours.push_back(Milliseconds([&] { ourSize = cli::WritePng(picture, {}).size(); }));
        libraries.push_back(Milliseconds([&] { librarySize = EncodeByLibrary(picture, isDeep).size(); }));
    }
    std::printf("encode/png/%d: %.0f ms, library %.0f ms, %.1f times as fast (aim 6.0); size %.3f of its (aim 1.05)\n",
                isDeep ? 16 : 8, Median(ours), Median(libraries), Median(libraries) / Median(ours),
                static_cast<double>(ourSize) / static_cast<double>(librarySize));
}

struct Form {
    const char* name;
    std::uint32_t depth;
    const char* options;  // of the tool
    const char* ending;
    double aim;  // the most that a sequence should take; 0: none is set
};

constexpr Form kForms[] = {
    {"png8", 8, "", ".png", 1.5},
    {"png16", 16, "", ".png", 1.8},
    {"exr-half", 32, "--exr half", ".exr", 1.5},
    {"exr-float", 32, "--exr float", ".exr", 2.5},
};

int Run(const std::string& command) {
    return std::system(("'" QUILLON_TOOL_FILE "' " + command + " >/dev/null").c_str());
}

void MeasureForms(const Picture& glow) {
    const auto measure = [&](const std::string& name, auto write, const StorageOptions& options) {
        std::vector<double> times;
        std::size_t size = 0;
        for (int round = 0; round < 3; ++round)
            times.push_back(Milliseconds([&] { size = write(glow, options).size(); }));
        std::printf("encode/%s: %.0f ms, %.1f MB\n", name.c_str(), Median(times), static_cast<double>(size) / 1e6);
    };
    measure("png/16 of floats", cli::WritePng, {});
    measure("tiff/float", cli::WriteTiff, {});
    for (const bool isHalf : {true, false}) {
        for (const char* compression : cli::kExrCompressions)
            measure(std::string("exr/") + (isHalf ? "half/" : "float/") + compression, cli::WriteExr,
                    {.isExrHalf = isHalf, .exrCompression = compression});
    }
}

bool MeasureSequences(const fs::path& folder) {
    const auto render = [&](std::uint32_t depth, const char* options, const char* ending) {
        return Milliseconds([&] {
            if (Run("render '" QUILLON_EFFECTS "/glow' -i '" + (folder / "in.exr").string() + "' -o '" +
                    (folder / "out").string() + "##" + ending + "' --frames 1-20 --depth " + std::to_string(depth) +
                    " " + options) != 0)
                std::exit(1);
        });
    };
    for (const Form& form : kForms) {
        std::vector<double> times, floors;
        for (int round = 0; round < 3; ++round) {
            floors.push_back(render(form.depth, "", ".argb"));
            times.push_back(render(form.depth, form.options, form.ending));
        }
        std::printf("sequence/%s: %.2f s, .argb %.2f s, ratio %.2f (aim %.1f)\n", form.name, Median(times) / 1000,
                    Median(floors) / 1000, Median(times) / Median(floors), form.aim);
    }
    return true;
}

}  // namespace

}  // namespace quillon::bench

int main() {
    using namespace quillon;
    const int threads = static_cast<int>(std::thread::hardware_concurrency());
    Imf::setGlobalThreadCount(threads);
    std::printf("%d threads\n", threads);
    const cli::Picture chart = bench::GrainyChart();
    for (const bool isDeep : {false, true}) bench::MeasurePng(chart, isDeep);

    const TemporaryFolder folder;
    cli::WritePicture(folder.path() / "in.exr", chart);
    const std::string glow = (folder.path() / "glow.argb").string();
    if (bench::Run("render '" QUILLON_EFFECTS "/glow' -i '" + (folder.path() / "in.exr").string() + "' -o '" + glow +
                   "'"))
        return 1;
    bench::MeasureForms(cli::ReadPicture(glow, {bench::kWidth, bench::kHeight, 32}));
    return bench::MeasureSequences(folder.path()) ? 0 : 1;
}
