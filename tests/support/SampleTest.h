#pragma once

#include <cstdint>
#include <string>

#include "support/EngineTest.h"
#include "support/SamePicture.h"

namespace quillon::test {

// One of the sample effects, in the engine of this process. A script error fails the test.
class SampleTest : public EngineTest {
protected:
    ~SampleTest() override;

    void load(const std::string& name);

    // Of the selected instance; FLOAT, or POPUP and BOOL.
    void set(const std::string& uniform, float value);
    void set(const std::string& uniform, std::int32_t value);

    // A frame of the selected instance over `input`, as a host asks for it. Positions are put to the middle, and
    // `input` into every layer.
    Picture render(const Picture& input, std::uint32_t bitDepth, double timeSeconds = 0);
};

}  // namespace quillon::test
