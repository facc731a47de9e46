#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "support/EngineTest.h"

namespace quillon::test {

// Channels A, R, G, B from 0 to 1, the top row first.
struct Picture {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<float> samples;

    const float* at(std::uint32_t x, std::uint32_t y) const { return &samples[(std::size_t{y} * width + x) * 4]; }
};

// One of the sample effects, in the engine of this process. A script error fails the test.
class SampleTest : public EngineTest {
protected:
    ~SampleTest() override;

    void load(const std::string& name);

    // Of the selected instance; FLOAT, or POPUP and BOOL.
    void set(const std::string& uniform, float value);
    void set(const std::string& uniform, std::int32_t value);

    // A frame of the selected instance over `input`, as a host asks for it. Positions are put to the middle.
    Picture render(const Picture& input, std::uint32_t bitDepth, double timeSeconds = 0);
};

}  // namespace quillon::test
