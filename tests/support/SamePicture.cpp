#include "support/SamePicture.h"

#include <lodepng.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>

#include "support/BuiltFiles.h"

namespace quillon::test {

namespace {

namespace fs = std::filesystem;

constexpr float kAmplification = 16;

bool WritePng(const fs::path& path, const Picture& picture, LodePNGColorType type) {
    if (picture.samples.empty()) return false;
    std::vector<unsigned char> bytes;
    for (std::size_t i = 0; i < picture.samples.size(); i += 4)
        for (const std::size_t channel : {1, 2, 3, 0}) {
            const float sample = picture.samples[i + channel];
            if (channel != 0 || type == LCT_RGBA)
                bytes.push_back(static_cast<unsigned char>(sample > 0 ? std::min(sample, 1.0f) * 255 + 0.5f : 0));
        }
    return lodepng::encode(path.string(), bytes, picture.width, picture.height, type) == 0;
}

// The running test's own folder.
fs::path FolderOfTest() {
    const auto* test = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = test ? std::string(test->test_suite_name()) + "." + test->name() : "no-test";
    std::replace(name.begin(), name.end(), '/', '-');
    return fs::path(::testing::TempDir()) / "quillon-pictures" / name;
}

// Alpha is left out: a transparent picture would show nothing of its colors.
std::string LeavePictures(const Picture& expected, const Picture& actual, const Picture& difference) {
    const fs::path folder = FolderOfTest();
    std::error_code error;
    fs::create_directories(folder, error);
    std::string written;
    for (const auto& [name, picture] :
         {std::pair{"expected.png", &expected}, {"actual.png", &actual}, {"difference.png", &difference}})
        if (WritePng(folder / name, *picture, LCT_RGB)) written += std::string(written.empty() ? "" : ", ") + name;
    return written.empty() ? "no pictures could be written to " + folder.string()
                           : "pictures: " + written + " in " + folder.string();
}

}  // namespace

::testing::AssertionResult SamePicture(const Picture& expected, const Picture& actual, float tolerance) {
    if (expected.width != actual.width || expected.height != actual.height ||
        expected.samples.size() != actual.samples.size()) {
        return ::testing::AssertionFailure()
               << "expected " << expected.width << "x" << expected.height << ", actual " << actual.width << "x"
               << actual.height << "; " << LeavePictures(expected, actual, {});
    }
    Picture difference = expected;
    std::size_t worst = 0, count = 0;
    for (std::size_t i = 0; i < expected.samples.size(); ++i) {
        const float apart = std::fabs(expected.samples[i] - actual.samples[i]);
        const bool isOff = expected.samples[i] != actual.samples[i] && !(apart <= tolerance);
        difference.samples[i] = isOff ? (std::isfinite(apart) ? apart : 1) * kAmplification : 0;
        count += isOff ? 1 : 0;
        if (difference.samples[i] > difference.samples[worst]) worst = i;
    }
    if (count == 0) return ::testing::AssertionSuccess();
    const std::size_t pixel = worst / 4;
    return ::testing::AssertionFailure() << count << " channels differ, most at column " << pixel % expected.width
                                         << ", row " << pixel / expected.width << ", channel "
                                         << "ARGB"[worst % 4] << ": expected " << expected.samples[worst] << ", actual "
                                         << actual.samples[worst] << "; "
                                         << LeavePictures(expected, actual, difference);
}

::testing::AssertionResult LooksAs(const std::string& name, Picture actual, float tolerance) {
    const fs::path path = SourceFolder() / "tests" / "pictures" / (name + ".png");
    if (std::getenv("QUILLON_RENEW_PICTURES")) {
        WritePng(path, actual, LCT_RGBA);
        return ::testing::AssertionFailure() << path.string() << " is renewed; look at it";
    }
    std::vector<unsigned char> bytes;
    unsigned width = 0, height = 0;
    if (lodepng::decode(bytes, width, height, path.string()) != 0)
        return ::testing::AssertionFailure() << path.string() << " cannot be read";
    Picture expected{width, height, {}};
    for (std::size_t i = 0; i < bytes.size(); i += 4)
        for (const std::size_t channel : {3, 0, 1, 2})
            expected.samples.push_back(static_cast<float>(bytes[i + channel]) / 255);
    for (float& sample : actual.samples) sample = std::clamp(sample, 0.0f, 1.0f);
    return SamePicture(expected, actual, tolerance);
}

}  // namespace quillon::test
