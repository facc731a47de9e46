#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "cli/import/BuiltIns.h"

namespace quillon::cli {

// What a shader file asks of an effect, free of the file's format. From this the effect's folder is written.

// A control of the effect, and the uniform that it feeds.
struct PlannedControl {
    // Which of the engine's kinds serves; a slider is also a whole number, a toggle also an event.
    enum class Kind { slider, toggle, popup, color, point };

    std::string name;       // of the control, as the file names its input
    std::string uniform{};  // of the shaders: the same name unless GLSL keeps it for itself
    std::string label;      // at most 31 bytes, no two the same
    Kind kind = Kind::slider;
    std::array<double, 4> value{};  // a slider's, toggle's or popup's value, a color's channels, a point's x and y
    // A slider's range. Of a point what the borders of the picture stand for.
    std::array<double, 2> least{};
    std::array<double, 2> most{};
    bool isPixels = false;      // a point in pixels: its range only serves to place the default
    bool isMouse = false;       // a point that reaches the shader as x, y and the place of a press
    int precision = 2;          // decimals of a slider
    std::vector<int> values{};  // of a popup's entries
    std::vector<std::string> entries{};
};

// A picture that shaders read.
struct PlannedImage {
    // Silence is a picture of one color, in place of sound.
    enum class Source { input, layer, file, silence };

    std::string name;
    Source source = Source::layer;
    std::string label{};              // of a layer
    std::filesystem::path path{};     // of a file, as it is read
    std::string fileName{};           // of a file in the effect's folder
    std::array<int, 2> size{256, 1};  // of silence
    std::string color{};              // of silence: a GLSL expression
};

// A target that passes draw into and read.
struct PlannedTarget {
    std::string name;
    std::string width{};  // JavaScript, in pixels of the output `width` by `height`; empty: the output's
    std::string height{};
    bool isPersistent = false;
    bool isFloat = false;
};

// A uniform sampler of a shader and the image or target that it reads.
struct PlannedSampler {
    std::string uniform{};
    std::string picture{};  // an image's or a target's name; empty: nothing, transparent black
    std::string size{};     // the uniform of its size in pixels, where the shader asks for it
    // How it is read; else filtered, and clamped to its edge.
    bool isTiled = false;  // repeats beyond its borders
    bool isNearest = false;
};

// A shader file of the effect.
struct PlannedShader {
    std::string name;  // its file is NAME.frag
    std::string text{};
    std::set<std::string> uniforms{};        // those that the text declares, samplers and sizes aside
    std::vector<PlannedSampler> samplers{};  // in the order of their declaration
    // The line of the author's file that is at line N of the text is originLines[N - 1]; 0 is a line of ours, and below
    // 0 is one of the text that several passes have in common.
    std::string origin{};  // the file, as messages name it
    std::string common{};
    std::vector<int> originLines{};
};

// One drawing, in the order of the frame.
struct PlannedPass {
    std::size_t shader = 0;
    int index = 0;
    std::string target{};  // empty: the frame
};

// The whole effect.
struct EffectPlan {
    ShaderFormat format = ShaderFormat::isf;
    std::string name;        // of the effect, as people read it
    std::string about{};     // what it does
    std::string credit{};    // who made it
    std::string category{};  // where hosts list it
    int majorVersion = 1;
    int minorVersion = 0;
    std::vector<PlannedControl> controls{};
    std::vector<PlannedImage> images{};
    std::vector<PlannedTarget> targets{};
    std::vector<PlannedShader> shaders{};
    std::vector<PlannedPass> passes{};

    // By its name; null when there is none.
    const PlannedTarget* findTarget(const std::string& target) const {
        for (const PlannedTarget& planned : targets) {
            if (planned.name == target) return &planned;
        }
        return nullptr;
    }
    // Whether frames depend on the ones before them.
    bool isPersistent() const {
        for (const PlannedTarget& target : targets) {
            if (target.isPersistent) return true;
        }
        return false;
    }
    // Whether a shader declares this uniform.
    bool uses(const std::string& uniform) const {
        for (const PlannedShader& shader : shaders) {
            if (shader.uniforms.contains(uniform)) return true;
        }
        return false;
    }
};

}  // namespace quillon::cli
