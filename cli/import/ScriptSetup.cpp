#include <algorithm>
#include <cmath>

#include "cli/import/ScriptHelpers.h"
#include "cli/import/ScriptPart.h"
#include "cli/import/SourceText.h"

namespace quillon::cli {

namespace {

// Comments of the script are lines of at most this many characters.
constexpr std::size_t kLineLength = 110;

// Words as comment lines.
std::string Comment(const std::string& words) {
    std::string text;
    std::string line = "//";
    std::size_t at = 0;
    while (at < words.size()) {
        const std::size_t end = std::min(words.find_first_of(" \t\r\n", at), words.size());
        if (end > at) {
            if (line.size() > 2 && line.size() + 1 + end - at > kLineLength) {
                text += line + "\n";
                line = "//";
            }
            line += " " + words.substr(at, end - at);
        }
        at = end + 1;
    }
    return line.size() > 2 ? text + line + "\n" : text;
}

class SetupWriter : ScriptPart {
public:
    using ScriptPart::ScriptPart;

    std::string write() {
        head();
        declarers();
        setup();
        return std::move(text);
    }

private:
    void head() {
        text += Comment(plan.name + (plan.about.empty() ? "" : ". " + plan.about));
        text += Comment(plan.credit);
        line("//");
        line(
            "// The shaders have their origin at the bottom left. Pictures come with their top row first, so each is "
            "turned");
        line("// over once, when it is copied; no other pass flips.");
        if (isPersistent) {
            line("//");
            line("// A frame goes on from the one that was rendered before it: render in order, from the first frame.");
        }
        line("");
        line("var controls = {{}};");
        if (has(PlannedControl::Kind::popup)) line("var choices = {{}};    // what a popup's entries stand for");
        line("var shaders = {{}};");
        line("var pictures = {{}};   // what the shaders read, by name");
        if (hasCopies())
            line("var copies = {{}};     // the pictures turned over: the shader that does it, and its target");
        if (!plan.targets.empty()) {
            line("");
            line(
                "// A target has two pictures, since a pass may read its own: `front` is read, `back` is drawn into, "
                "then they");
            line("// swap.{}", isPersistent ? " `start` is what the frame started from." : "");
            line("var targets = {{}};");
        }
        if (isPersistent) {
            line("var memories = [];     // of up to MOST_MEMORIES instances, the last used at the end");
            line("var MOST_MEMORIES = 4;");
            line("var SAME_MOMENT = 1e-6;  // seconds");
        }
        line("var frame = {{}};      // time{}",
             countsFrames ? ", size, index from 0, seconds since the frame before and frames a second"
                          : " in seconds and size");
        line("");
    }

    void declarers() {
        if (has(PlannedControl::Kind::slider) || needsRate) {
            text += ScriptHelpers::kSlider;
        }
        if (has(PlannedControl::Kind::popup)) {
            text += ScriptHelpers::kPopup;
        }
        if (has(PlannedControl::Kind::toggle) || has(PlannedControl::Kind::color) || has(PlannedControl::Kind::point)) {
            text += ScriptHelpers::kControl;
        }
        if (hasCopies() || !plan.targets.empty()) {
            text += ScriptHelpers::kNewTarget;
        }
        if (hasCopies()) {
            text += ScriptHelpers::kCopy;
        }
    }

    void declare(const PlannedControl& control) {
        const std::string name = ScriptLiteral(control.name);
        const std::string label = ScriptLiteral(control.label);
        switch (control.kind) {
            case PlannedControl::Kind::slider:
                line("    slider({}, {}, {}, {}, {}, {});", name, label, NumberText(control.value[0]),
                     NumberText(control.least[0]), NumberText(control.most[0]), control.precision);
                return;
            case PlannedControl::Kind::toggle:
                line("    control({}, QL_Type.BOOL, {}, {});", name, label, control.value[0] != 0 ? 1 : 0);
                return;
            case PlannedControl::Kind::popup: {
                std::string entries;
                for (const std::string& entry : control.entries) entries += (entries.empty() ? "" : "|") + entry;
                const auto place = std::ranges::find(control.values, static_cast<int>(control.value[0]));
                line("    popup({}, {}, {}, {}, [{}]);", name, label, ScriptLiteral(entries),
                     place - control.values.begin() + 1, fmt::join(control.values, ", "));
                return;
            }
            case PlannedControl::Kind::color: {
                std::array<long, 4> bytes{};
                std::ranges::transform(control.value, bytes.begin(),
                                       [](double channel) { return std::lround(std::clamp(channel, 0.0, 1.0) * 255); });
                line("    control({}, QL_Type.COLOR, {}, [{}]);", name, label, fmt::join(bytes, ", "));
                return;
            }
            case PlannedControl::Kind::point: {
                // Shares of the picture from its top left corner; a share of 1 would arrive as 0.
                std::array<std::string, 2> shares;
                for (std::size_t i = 0; i < 2; ++i) {
                    const double share = (control.value[i] - control.least[i]) / (control.most[i] - control.least[i]);
                    shares[i] = NumberText(std::clamp(i == 0 || control.isMouse ? share : 1 - share, 0.0, 0.99999));
                }
                line("    control({}, QL_Type.POINT2D, {}, [{}]);", name, label, fmt::join(shares, ", "));
                return;
            }
        }
    }

    void declareShaders() {
        for (const PlannedShader& shader : plan.shaders) line("    shaders.{0} = QL_initShader('{0}');", shader.name);
    }

    void setup() {
        line("function setup() {{");
        const bool hasMouse = std::ranges::any_of(plan.controls, &PlannedControl::isMouse);
        if (hasMouse) {
            line(
                "    // Ahead of the controls: a uniform takes the kind of a control of its name that is there before "
                "it, and");
            line("    // iMouse has four numbers, not two.");
            declareShaders();
            line("");
        }
        // Layers and controls in the file's order read best; layers come after the controls.
        for (const PlannedControl& control : plan.controls) declare(control);
        for (const PlannedImage& image : plan.images) {
            if (image.source == PlannedImage::Source::layer)
                line("    controls.{0} = QL_initParam('{0}', QL_Type.LAYER, {1});", image.name,
                     ScriptLiteral(image.label));
        }
        if (needsRate) line("    slider('frameRate', 'Frames per second', 25, 1, 240, 3);");
        line("");
        if (!hasMouse) declareShaders();
        if (!plan.targets.empty())
            line("    shaders.clear = QL_initShader('clear', 'void main() {{ gl_FragColor = vec4(0.0); }}');");
        for (const PlannedImage& image : plan.images) {
            if (!isRead(image.name)) continue;
            if (image.source == PlannedImage::Source::silence) {
                line("    copies.{} = newTarget(['front']);", image.name);
                line("    copies.{0}.shader = QL_initShader('{0} silence',", image.name);
                line("        'void main() {{ gl_FragColor = {}; }}');", image.color);
                continue;
            }
            line("    copy('{}', '{}');", image.name,
                 image.source == PlannedImage::Source::layer ? image.name : "picture");
            if (image.source == PlannedImage::Source::file)
                line("    copies.{}.picture = QL_initTexture({});", image.name, ScriptLiteral(image.fileName));
        }
        for (const PlannedTarget& target : plan.targets) {
            if (!target.isPersistent) line("    targets.{} = newTarget(['front', 'back']);", target.name);
        }
        line("}}");
    }
};

}  // namespace

std::string WriteScriptSetup(const EffectPlan& plan) {
    return SetupWriter(plan).write();
}

}  // namespace quillon::cli
