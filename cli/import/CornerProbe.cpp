#include "cli/import/CornerProbe.h"

#include <fmt/format.h>

#include <algorithm>
#include <sstream>

namespace quillon::cli {

namespace {

constexpr const char* kFunctions = R"(float probeGuess(float seed, float least, float most)
{
    float share = fract(sin(dot(gl_FragCoord.xy, vec2(12.9898, 78.233)) + seed * 37.719) * 43758.5453);
    return least + (most - least) * share;
}
bool probeBends(vec4 a, vec4 b, vec4 c, vec4 d)
{
    return length(a + d - b - c) > 1e-4 * (length(a) + length(b) + length(c) + length(d)) + 1e-6;
}
)";

// What a built-in may be, where it is not a size.
struct Range {
    const char* name;
    double least, most;
};
constexpr Range kRanges[] = {{"TIME", 0, 100}, {"TIMEDELTA", 0, 0.1}, {"FRAMEINDEX", 0, 1000}, {"DATE", 0, 2000}};
constexpr double kLargestSize = 4096;  // pixels

class ProbeWriter {
public:
    ProbeWriter(const VertexStage& vertexStage, const EffectPlan& effectPlan) : stage(vertexStage), plan(effectPlan) {}

    std::string write(const std::string& head, const std::vector<std::string>& starters) {
        std::string text = kFunctions;
        std::istringstream lines(head);
        for (std::string line; std::getline(lines, line);) text += changed(line) + "\n";
        text += JoinTokens(stage.tokens) + "\nvoid main()\n{\n";
        for (const std::string& starter : starters) text += fmt::format("    {}();\n", starter);
        text += CornerCalls(stage, 4) + "    gl_FragColor = vec4(0.0, 0.0, 0.0, 1.0);\n";
        if (stage.movesCorners) text += "    if (probeBends(p00, p10, p01, p11)) gl_FragColor.r = 1.0;\n";
        int number = 0;
        for (const VaryingPart& part : PartsOf(stage.varyings)) text += Trial(part, ++number);
        return text + "}\n";
    }

private:
    std::string guess(double least, double most) {
        return fmt::format("probeGuess({}.0, {:.6f}, {:.6f})", ++seed, least, most);
    }

    std::string guesses(const char* type, int count, double least, double most) {
        std::string parts;
        for (int i = 0; i < count; ++i) parts += (i > 0 ? ", " : "") + guess(least, most);
        return fmt::format("{}({})", type, parts);
    }

    // A uniform becomes a variable with a value of its own in each pixel, and reads give another color everywhere.
    std::string changed(const std::string& line) {
        std::istringstream words(line);
        std::string first, type, name;
        words >> first >> type >> name;
        if (line.find("return texture2D(image, place);") != std::string::npos) {
            const std::size_t brace = line.find('{');
            return line.substr(0, brace) +
                   "{ return fract(sin(dot(place + gl_FragCoord.xy, vec2(12.9898, 78.233)) + vec4(1.0, 2.0, 3.0, 4.0)) "
                   "* "
                   "43758.5453); }";
        }
        if (first != "uniform" || type == "sampler2D" || name.empty()) return line;
        name.pop_back();  // the semicolon
        const std::string value = valueOf(type, name);
        return value.empty() ? line : fmt::format("{} {} = {};", type, name, value);
    }

    // Empty: it stays a uniform that nobody feeds.
    std::string valueOf(const std::string& type, const std::string& name) {
        const auto control = std::ranges::find(plan.controls, name, &PlannedControl::uniform);
        if (control != plan.controls.end()) return valueOf(*control);
        const auto passes = static_cast<double>(plan.passes.size());
        if (name == "PASSINDEX") return fmt::format("int({})", guess(0, std::max(passes - 0.001, 0.0)));
        for (const Range& range : kRanges) {
            if (name == range.name) return guesses(type.c_str(), type == "vec4" ? 4 : 1, range.least, range.most);
        }
        return type == "vec2" ? guesses("vec2", 2, 1, kLargestSize) : "";
    }

    std::string valueOf(const PlannedControl& control) {
        switch (control.kind) {
            case PlannedControl::Kind::slider:
                return guess(control.least[0], control.most[0]);
            case PlannedControl::Kind::toggle:
                return guess(0, 1) + " > 0.5";
            case PlannedControl::Kind::color:
                return guesses("vec4", 4, 0, 1);
            case PlannedControl::Kind::point:
                return fmt::format("vec2({}, {})", guess(control.least[0], control.most[0]),
                                   guess(control.least[1], control.most[1]));
            case PlannedControl::Kind::popup:
                break;
        }
        std::string choice = std::to_string(control.values.back());
        for (std::size_t i = 0; i + 1 < control.values.size(); ++i)
            choice = fmt::format("{} < {:.6f} ? {} : ({})", guess(0, 1), 1.0 / static_cast<double>(i + 2),
                                 control.values[i], choice);
        return choice;
    }

    static std::string Trial(const VaryingPart& part, int number) {
        const bool isMatrix = part.type.starts_with("mat");
        const int columns = isMatrix ? part.type.back() - '0' : 1;
        const std::string type = isMatrix ? "vec" + part.type.substr(3) : part.type;
        std::string text;
        for (int column = 0; column < columns; ++column) {
            std::string values;
            for (const char* corner : {"00", "10", "01", "11"}) {
                std::string value = part.base + corner + (isMatrix ? fmt::format("[{}]", column) : "");
                if (type == "float") value = fmt::format("vec4({})", value);
                if (type == "vec2") value = fmt::format("vec4({0}, {0})", value);
                if (type == "vec3") value = fmt::format("vec4({}, 0.0)", value);
                values += (values.empty() ? "" : ", ") + value;
            }
            text += fmt::format("    if (probeBends({})) gl_FragColor.g = {}.0;\n", values, number);
        }
        return text;
    }

    const VertexStage& stage;
    const EffectPlan& plan;
    int seed = 0;
};

}  // namespace

std::string WriteCornerProbe(const VertexStage& stage, const std::string& head,
                             const std::vector<std::string>& starters, const EffectPlan& plan) {
    return ProbeWriter(stage, plan).write(head, starters);
}

}  // namespace quillon::cli
