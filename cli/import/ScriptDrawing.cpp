#include <algorithm>

#include "cli/import/BuiltIns.h"
#include "cli/import/ScriptHelpers.h"
#include "cli/import/ScriptPart.h"
#include "cli/import/SourceText.h"

namespace quillon::cli {

namespace {

std::string Capitalized(std::string name) {
    if (!name.empty() && name[0] >= 'a' && name[0] <= 'z') name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

class DrawingWriter : ScriptPart {
public:
    using ScriptPart::ScriptPart;

    std::string write() {
        helpers();
        for (const PlannedShader& shader : plan.shaders) pass(shader);
        draw();
        return std::move(text);
    }

private:
    void helpers() {
        if (hasCopies() || !plan.targets.empty()) text += ScriptHelpers::kFit;
        const auto readsFrom = [this](PlannedImage::Source source) {
            return std::ranges::any_of(plan.images,
                                       [&](const PlannedImage& i) { return i.source == source && isRead(i.name); });
        };
        if (readsFrom(PlannedImage::Source::input) || readsFrom(PlannedImage::Source::file))
            text += ScriptHelpers::kTurnOver;
        if (readsFrom(PlannedImage::Source::layer)) text += ScriptHelpers::kTurnLayer;
        bool hasPlaces = false;
        bool hasMouse = false;
        for (const PlannedControl& control : plan.controls) {
            if (control.kind != PlannedControl::Kind::point) continue;
            (control.isMouse ? hasMouse : hasPlaces) = true;
        }
        if (hasPlaces) text += ScriptHelpers::kPlace;
        if (hasMouse) text += ScriptHelpers::kMouse;
        const bool isSized = std::ranges::any_of(
            plan.targets, [](const PlannedTarget& t) { return !t.width.empty() || !t.height.empty(); });
        if (isSized) {
            text += ScriptHelpers::kWhole;
        }
        if (std::ranges::any_of(plan.shaders, [this](const PlannedShader& shader) { return isFed(shader); }))
            text += ScriptHelpers::kFeed;
        if (std::ranges::any_of(plan.shaders, [this](const PlannedShader& shader) {
                return std::ranges::any_of(shader.samplers, [this](const PlannedSampler& s) { return isSetUp(s); });
            }))
            text += ScriptHelpers::kRead;
        if (isPersistent) {
            line("");
            line("function newMemory(output) {{");
            line("    return {{");
            line("        output: output, time: 0, index: 0, delta: 0, width: 0, height: 0,");
            line("        targets: {{");
            std::string sides;
            for (const PlannedTarget& target : plan.targets) {
                if (!target.isPersistent) continue;
                sides += fmt::format("{}            {}: newTarget(['front', 'back', 'start'])",
                                     sides.empty() ? "" : ",\n", target.name);
            }
            line("{}", sides);
            line("        }}");
            line("    }};");
            line("}}");
            text += ScriptHelpers::kRecall;
        }
    }

    // The value of a control as the shaders get it.
    std::string valueOf(const PlannedControl& control) const {
        const std::string value = fmt::format("QL_getParamValue(controls.{})", control.name);
        if (control.kind == PlannedControl::Kind::popup)
            return fmt::format("choices.{0}[QL_getParamValue(controls.{0}) - 1]", control.name);
        if (control.kind != PlannedControl::Kind::point) return value;
        if (control.isMouse) return fmt::format("mouse('{}', frame.size)", control.name);
        const std::string least =
            control.isPixels ? "[0, 0]"
                             : fmt::format("[{}, {}]", NumberText(control.least[0]), NumberText(control.least[1]));
        const std::string most =
            control.isPixels ? "frame.size"
                             : fmt::format("[{}, {}]", NumberText(control.most[0]), NumberText(control.most[1]));
        return fmt::format("place('{}', {}, {}, frame.size)", control.name, least, most);
    }

    static bool IsSentAsItIs(const PlannedControl& control) {
        return control.uniform == control.name && control.kind != PlannedControl::Kind::popup &&
               control.kind != PlannedControl::Kind::point;
    }

    // Whether a pass gives the shader more than controls as they are.
    bool isFed(const PlannedShader& shader) const {
        const auto usesBuiltIn = [&](const BuiltIn& builtIn) { return shader.uniforms.contains(builtIn.name); };
        const auto usesValue = [&](const PlannedControl& control) {
            return shader.uniforms.contains(control.uniform) && !IsSentAsItIs(control);
        };
        return !shader.samplers.empty() || std::ranges::any_of(BuiltIns(plan.format), usesBuiltIn) ||
               std::ranges::any_of(plan.controls, usesValue);
    }

    // Whether some pass reads the sampler's picture in another way than targets are read at first.
    bool isSetUp(const PlannedSampler& sampler) const {
        const auto isSpecial = [&](const PlannedSampler& other) {
            return other.picture == sampler.picture && (other.isNearest || other.isTiled);
        };
        return !sampler.picture.empty() && std::ranges::any_of(plan.shaders, [&](const PlannedShader& shader) {
            return std::ranges::any_of(shader.samplers, isSpecial);
        });
    }

    void pass(const PlannedShader& shader) {
        const bool needsIndex = shader.uniforms.contains("PASSINDEX");
        line("");
        line("function render{}(target, width, height{}) {{", Capitalized(shader.name), needsIndex ? ", index" : "");
        line("    var shader = shaders.{};", shader.name);
        for (const BuiltIn& builtIn : BuiltIns(plan.format)) {
            if (shader.uniforms.contains(builtIn.name))
                line("    feed(shader, '{}', {});", builtIn.name, builtIn.value);
        }
        for (const PlannedSampler& sampler : shader.samplers) {
            const std::string picture = sampler.picture.empty() ? "0" : "pictures." + sampler.picture;
            line("    feed(shader, '{}', {});", sampler.uniform, picture);
            if (isSetUp(sampler)) line("    read({}, {}, {});", picture, sampler.isNearest, sampler.isTiled);
            if (sampler.size.empty()) continue;
            if (sampler.picture.empty())
                line("    feed(shader, '{}', [0, 0]);", sampler.size);
            else
                line("    feed(shader, '{}', QL_getSurfaceDim({}).slice(0, 2));", sampler.size, picture);
        }
        for (const PlannedControl& control : plan.controls) {
            if (!shader.uniforms.contains(control.uniform)) continue;
            if (IsSentAsItIs(control))
                line("    QL_setShaderParam(shader, controls.{});", control.name);
            else
                line("    feed(shader, '{}', {});", control.uniform, valueOf(control));
        }
        line("    QL_renderShader(shader, target, false);");
        line("}}");
    }

    void takePictures() {
        for (const PlannedImage& image : plan.images) {
            if (!isRead(image.name)) continue;
            switch (image.source) {
                case PlannedImage::Source::input:
                    line("    var input = QL_getSequenceTexture();");
                    line("    pictures.{0} = turnOver('{0}', input, QL_getSurfaceDim(input) || size, false);",
                         image.name);
                    break;
                case PlannedImage::Source::layer:
                    line("    pictures.{0} = turnLayer('{0}', size);", image.name);
                    break;
                case PlannedImage::Source::file:
                    line(
                        "    pictures.{0} = turnOver('{0}', copies.{0}.picture, "
                        "QL_getSurfaceDim(copies.{0}.picture), true);",
                        image.name);
                    break;
                case PlannedImage::Source::silence:
                    line(
                        "    if (fit(copies.{0}, {1}, {2}, 32)) QL_renderShader(copies.{0}.shader, copies.{0}.front, "
                        "false);",
                        image.name, image.size[0], image.size[1]);
                    line("    pictures.{0} = copies.{0}.front;", image.name);
                    break;
            }
        }
    }

    std::string sideOf(const std::string& script, const char* side) const {
        return script.empty() ? side : fmt::format("whole({})", script);
    }

    void draw() {
        line("");
        if (isPersistent)
            line("// quillon-ignore render/frame-order: each frame goes on from the one before, and is meant to");
        line("function draw() {{");
        line("    var output = QL_getSequenceRT();");
        line("    var size = QL_getSurfaceDim(output);");
        line("    var width = size[0], height = size[1];");
        line("    var time = QL_getTime();");
        if (isPersistent) line("    var memory = recall(output);");
        if (!plan.targets.empty()) line("");
        for (const PlannedTarget& target : plan.targets) {
            const std::string sides =
                fmt::format("{}, {}", sideOf(target.width, "width"), sideOf(target.height, "height"));
            if (target.isPersistent)
                line("    fit(memory.targets.{}, {}, {});", target.name, sides, target.isFloat ? 32 : 8);
            else
                line(
                    "    if (!fit(targets.{0}, {1}, {2}))\n"
                    "        QL_renderShader(shaders.clear, targets.{0}.front, false);",
                    target.name, sides, target.isFloat ? 32 : 8);
        }
        if (isPersistent) line("    begin(memory, time, size);");
        line("    frame = {{ time: time, size: [width, height]{} }};", frameFields());
        takePictures();
        for (const PlannedTarget& target : plan.targets) {
            line("    pictures.{0} = {1}.{0}.front;", target.name, OwnerOf(target));
        }
        if (isPersistent || std::ranges::any_of(plan.passes, [](const PlannedPass& p) { return !p.target.empty(); })) {
            drawPasses();
        } else {
            line("");
            for (const PlannedPass& planned : plan.passes) drawFrame(planned);
        }
        line("}}");
    }

    static std::string OwnerOf(const PlannedTarget& target) {
        return target.isPersistent ? "memory.targets" : "targets";
    }

    std::string frameFields() const {
        if (!countsFrames) return "";
        if (isPersistent)
            return ", index: memory.index, delta: memory.delta,\n"
                   "              rate: memory.delta > 0 ? 1 / memory.delta : 25";
        return ", index: Math.round(time * QL_getParamValue(controls.frameRate)),\n"
               "              delta: time > 0 ? 1 / QL_getParamValue(controls.frameRate) : 0,\n"
               "              rate: QL_getParamValue(controls.frameRate)";
    }

    void drawFrame(const PlannedPass& planned) {
        const PlannedShader& shader = plan.shaders[planned.shader];
        line("    render{}(output, width, height{});", Capitalized(shader.name),
             shader.uniforms.contains("PASSINDEX") ? fmt::format(", {}", planned.index) : "");
    }

    void drawPasses() {
        line("");
        line("    function into(target, name, render, index) {{");
        line("        var sides = QL_getSurfaceDim(target.back);");
        line("        render(target.back, sides[0], sides[1], index);");
        line("        pictures[name] = target.back;");
        line("        target.back = target.front;");
        line("        target.front = pictures[name];");
        line("    }}");
        for (const PlannedPass& planned : plan.passes) {
            if (planned.target.empty()) {
                drawFrame(planned);
                continue;
            }
            const PlannedShader& shader = plan.shaders[planned.shader];
            line("    into({}.{}, '{}', render{}, {});", OwnerOf(*plan.findTarget(planned.target)), planned.target,
                 planned.target, Capitalized(shader.name), planned.index);
        }
        const PlannedPass& last = plan.passes.back();
        if (!last.target.empty()) {
            line("    // The last pass's target is the frame.");
            line("    QL_blitRenderTarget(pictures.{}, output, false, true);", last.target);
        }
    }
};

}  // namespace

std::string WriteScriptDrawing(const EffectPlan& plan) {
    return DrawingWriter(plan).write();
}

}  // namespace quillon::cli
