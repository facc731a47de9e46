#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "../cli/ToolTest.h"

namespace quillon::test {

using Color = std::array<float, 4>;  // red, green, blue, alpha

// Shader files as a user imports them, and the pictures that their effects give. All pictures are 8 by 6 floats.
class ImportTest : public ToolTest {
protected:
    static constexpr int kWidth = 8;
    static constexpr int kHeight = 6;

    // What is in the input "in.argb" at a pixel whose y counts from the bottom. Eighths, so that 8 bits hold none of
    // them exactly and floats all.
    static Color Input(int x, int y) {
        return {x / 8.0f, y / 8.0f, ((x + 2 * y) % 7) / 8.0f, (1 + (x + y) % 4) / 4.0f};
    }
    // The same for the layer "layer.argb".
    static Color Layer(int x, int y) { return {y / 8.0f, ((3 * x + y) % 5) / 8.0f, x / 8.0f, 1}; }

    ImportTest();

    // Makes the effect `name` of a file with this text, which check finds nothing wrong with. What the tool printed as
    // warnings.
    std::string import(const std::string& name, const std::string& file, const std::string& text,
                       const std::string& arguments = "");
    // A frame of the effect, by x and by y from the bottom.
    std::vector<Color> render(const std::string& effect, const std::string& arguments = "");
    // Several, from frame 0 on, 25 a second.
    std::vector<std::vector<Color>> renderFrames(const std::string& effect, int count,
                                                 const std::string& arguments = "");

    using Formula = std::function<Color(int x, int y)>;
    static void ExpectPicture(const std::vector<Color>& picture, const Formula& expected, float tolerance = 2e-6f);

private:
    std::vector<Color> read(const std::string& file);
};

}  // namespace quillon::test
