// Measures the preview.
//
//   preview/EFFECT/SIZE     from the request for a frame to its last byte, against the packed module's own frame
//
// With --long instead: the memory and the open files of server and worker over 500 reloads and 10,000 frames.
// The input is the test picture at 8 bits. Rounds alternate; a ratio is that of the medians.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "ModuleFrame.h"
#include "PreviewProcess.h"
#include "cli/pictures/Chart.h"
#include "cli/pictures/PictureFormat.h"
#include "platform/TemporaryPath.h"

namespace quillon::bench {

namespace {

namespace fs = std::filesystem;

// Without positions, whose defaults depend on the host's layer.
constexpr const char* kEffects[] = {"grade", "ink", "glow"};
struct Size {
    std::uint32_t width, height;
    double aim;
};
constexpr Size kSizes[] = {{960, 540, 1.4}, {1920, 1080, 1.25}};

double Median(std::vector<double> values) {
    std::ranges::nth_element(values, values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2));
    return values[values.size() / 2];
}

cli::Picture Chart(std::uint32_t width, std::uint32_t height) {
    return cli::Convert(cli::DrawChart(width, height), cli::SampleFormat::byte, cli::ChannelOrder::argb);
}

void Measure(const fs::path& folder, const std::string& effect, const Size& size) {
    constexpr int kRounds = 15;
    const fs::path module = folder / (effect + ".so"), input = folder / "in.png";
    const std::string pack =
        "'" QUILLON_TOOL_FILE "' pack '" QUILLON_EFFECTS "/" + effect + "' -o '" + module.string() + "' >/dev/null";
    if (std::system(pack.c_str()) != 0) throw std::runtime_error("the effect cannot be packed");
    const cli::Picture chart = Chart(size.width, size.height);
    cli::WritePicture(input, chart);
    ModuleFrame own(module);
    PreviewProcess preview(fs::path(QUILLON_EFFECTS) / effect, input);
    std::vector<std::byte> output(chart.pixels.size());
    const FrameSize frameSize{size.width, size.height, 8};
    std::vector<double> owns, previews;
    own.render(frameSize, chart.pixels.data(), output.data());
    for (int round = 0; round < kRounds; ++round) {
        owns.push_back(own.render(frameSize, chart.pixels.data(), output.data()));
        previews.push_back(preview.render());
    }
    std::printf("preview/%s/%ux%u: %.2f ms, module %.2f ms, ratio %.2f (aim %.2f)\n", effect.c_str(), size.width,
                size.height, Median(previews), Median(owns), Median(previews) / Median(owns), size.aim);
}

void PrintUse(const PreviewProcess& preview, const std::string& when) {
    const PreviewProcess::Use use = preview.use();
    std::printf("%s: %.1f MB, %ld files\n", when.c_str(), static_cast<double>(use.kilobytes) / 1024, use.files);
}

void MeasureLong(const fs::path& folder) {
    const fs::path effect = folder / "fx", input = folder / "in.png";
    fs::copy(fs::path(QUILLON_EFFECTS) / "glow", effect, fs::copy_options::recursive);
    cli::WritePicture(input, Chart(96, 54));
    PreviewProcess preview(effect, input);
    for (int frame = 1; frame <= 10000; ++frame) {
        preview.render();
        if (frame == 1000 || frame == 5500 || frame == 10000) PrintUse(preview, std::to_string(frame) + " frames");
    }
    for (int reload = 1; reload <= 500; ++reload) {
        std::ofstream(effect / "fx.js", std::ios::app) << "// " << reload << "\n";
        preview.waitForReload();
        if (reload == 50 || reload == 275 || reload == 500) PrintUse(preview, std::to_string(reload) + " reloads");
    }
}

}  // namespace

}  // namespace quillon::bench

int main(int count, char** arguments) {
    using namespace quillon;
    const TemporaryFolder folder;
    if (count > 1 && std::strcmp(arguments[1], "--long") == 0) {
        bench::MeasureLong(folder.path());
        return 0;
    }
    for (const char* const effect : bench::kEffects)
        for (const bench::Size& size : bench::kSizes) bench::Measure(folder.path(), effect, size);
    return 0;
}
