#include "cli/import/ScriptWriter.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/import/SourceText.h"

namespace quillon::cli {

namespace {

// The days of both formats' dates are the same; only the month counts from 1 or from 0.
constexpr BuiltIn kBuiltIns[] = {
    {"TIME", "float", "frame.time", false},
    {"TIMEDELTA", "float", "frame.delta", true},
    {"FRAMEINDEX", "int", "frame.index", true},
    {"DATE", "vec4", "[2000, 1, 1, frame.time % 86400]", false},
    {"PASSINDEX", "int", "index", false},
    {"RENDERSIZE", "vec2", "[width, height]", false},
    {"iTime", "float", "frame.time", false},
    {"iGlobalTime", "float", "frame.time", false},
    {"iTimeDelta", "float", "frame.delta", true},
    {"iFrame", "int", "frame.index", true},
    {"iFrameRate", "float", "frame.rate", true},
    {"iDate", "vec4", "[2000, 0, 1, frame.time % 86400]", false},
    {"iResolution", "vec3", "[width, height, 1]", false},
    {"iSampleRate", "float", "44100", false},
};

// Comments of the script are lines of at most this many characters.
constexpr std::size_t kLineLength = 110;

std::string Capitalized(std::string name) {
    if (!name.empty() && name[0] >= 'a' && name[0] <= 'z') name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

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

constexpr const char* kFit = R"(
// Gives a target this size. True when its pictures are new, and then transparent black.
function fit(target, width, height, bits) {
    var now = QL_getSurfaceDim(target.front);
    if (now && now[0] === width && now[1] === height && now[2] === bits) return false;
    target.sides.forEach(function (side) {
        QL_release(target[side]);
        target[side] = QL_initRenderTarget(width, height, bits);
        QL_setTextureParam(target[side], QL_GL.TEXTURE_WRAP_S, target.wrap);
        QL_setTextureParam(target[side], QL_GL.TEXTURE_WRAP_T, target.wrap);
    });
    return true;
}
)";

constexpr const char* kTurnOver = R"(
// The picture with its bottom row first, as the shaders want it. `isKept`: a picture that never changes.
function turnOver(name, picture, size, isKept) {
    var copy = copies[name];
    var isNew = fit(copy, size[0], size[1], size[2]);
    if (isKept && !isNew) return copy.front;
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);  // an exact copy; each upload resets this
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParamVal(copy.shader, 'picture', picture);
    QL_renderShader(copy.shader, copy.front, true);
    return copy.front;
}
)";

constexpr const char* kTurnLayer = R"(
// The same of a layer. The texture of a layer control is shared by all instances of the effect, and only the control's
// value says that this one has none. A layer that nobody has chosen yet is 2 by 2; it then has the output's size.
function turnLayer(name, size) {
    var copy = copies[name];
    var picture = QL_getParamValue(controls[name]);
    var own = QL_getSurfaceDim(picture);
    if (own && (own[0] > 2 || own[1] > 2)) size = own;
    fit(copy, size[0], size[1], size[2]);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParam(copy.shader, controls[name]);
    QL_renderShader(copy.shader, copy.front, true);
    return copy.front;
}
)";

constexpr const char* kPlace = R"(
// Where a point control is, from the bottom left corner. The borders of the picture stand for `least` and `most`. A
// default at the right or lower border arrives a hair before it.
function place(name, least, most, size) {
    var point = QL_getParamValue(controls[name]);
    return [point[0] / size[0], point[1] / size[1]].map(function (share, i) {
        if (Math.abs(share - 1) < 1 / 32768) share = 1;
        return least[i] + (most[i] - least[i]) * (i === 0 ? share : 1 - share);
    });
}
)";

constexpr const char* kMouse = R"(
// A pointer that is held where the control is; four zeros while the control is in its corner, where it starts.
function mouse(name, size) {
    var point = QL_getParamValue(controls[name]);
    if (point[0] === 0 && point[1] === 0) return [0, 0, 0, 0];
    var y = size[1] - point[1];
    return [point[0], y, point[0], -y];
}
)";

constexpr const char* kRecall = R"(
// What this instance keeps. Script variables are shared by all instances; no two have the same output target.
function recall(output) {
    var memory = null;
    for (var i = 0; i < memories.length; ++i)
        if (memories[i].output === output) memory = memories.splice(i, 1)[0];
    memory = memory || newMemory(output);
    memories.push(memory);
    if (memories.length > MOST_MEMORIES) {
        var oldest = memories.shift();
        Object.keys(oldest.targets).forEach(function (name) {
            oldest.targets[name].sides.forEach(function (side) { QL_release(oldest.targets[name][side]); });
        });
    }
    return memory;
}

// Brings the kept pictures to where this frame starts from. The same moment once more, as when a control is moved,
// starts from what it started from before; a later moment goes on; an earlier one, and another size, start afresh.
function begin(memory, time, size) {
    var step = time - memory.time;
    var isNew = memory.width !== size[0] || memory.height !== size[1] || step < -SAME_MOMENT;
    var isAgain = !isNew && step < SAME_MOMENT;
    if (isNew) {
        memory.index = 0;
        memory.delta = 0;
    } else if (!isAgain) {
        memory.index += 1;
        memory.delta = step;
    }
    memory.time = time;
    memory.width = size[0];
    memory.height = size[1];
    Object.keys(memory.targets).forEach(function (name) {
        var target = memory.targets[name];
        if (isNew) QL_renderShader(shaders.clear, target.front, false);
        if (isAgain) QL_blitRenderTarget(target.start, target.front, false, false);
        else QL_blitRenderTarget(target.front, target.start, false, false);
    });
}
)";

class Writer {
public:
    explicit Writer(const EffectPlan& effectPlan) : plan(effectPlan) {
        isPersistent = plan.isPersistent();
        for (const BuiltIn& builtIn : kBuiltIns) {
            if (!plan.uses(builtIn.name)) continue;
            countsFrames = countsFrames || builtIn.needsFrames;
        }
        needsRate = countsFrames && !isPersistent;
    }

    std::string write() {
        head();
        declarers();
        setup();
        helpers();
        for (const PlannedShader& shader : plan.shaders) pass(shader);
        draw();
        return std::move(text);
    }

private:
    template <class... Values>
    void line(fmt::string_view form, const Values&... values) {
        text += fmt::vformat(form, fmt::make_format_args(values...)) + "\n";
    }

    bool has(PlannedControl::Kind kind) const {
        return std::ranges::any_of(plan.controls, [kind](const PlannedControl& c) { return c.kind == kind; });
    }
    bool has(PlannedImage::Source source) const {
        return std::ranges::any_of(plan.images, [source](const PlannedImage& i) { return i.source == source; });
    }
    bool hasCopies() const {
        return std::ranges::any_of(plan.images, [this](const PlannedImage& i) { return isRead(i.name); });
    }
    bool isRead(const std::string& picture) const {
        return std::ranges::any_of(plan.shaders, [&](const PlannedShader& shader) {
            return std::ranges::any_of(shader.samplers, [&](const PlannedSampler& s) { return s.picture == picture; });
        });
    }
    bool needsClear() const { return !plan.targets.empty(); }

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
            text += R"(function slider(name, label, value, min, max, decimals) {
    controls[name] = QL_initParam(name, QL_Type.FLOAT, label);
    QL_setParamMinMax(controls[name], min, max);
    QL_setParamValue(controls[name], value);
    QL_setParamPrecision(controls[name], decimals);
}

)";
        }
        if (has(PlannedControl::Kind::popup)) {
            text += R"(function popup(name, label, entries, value, values) {
    controls[name] = QL_initParam(name, QL_Type.POPUP, label);
    QL_setParamChoices(controls[name], entries);
    QL_setParamValue(controls[name], value);
    choices[name] = values;
}

)";
        }
        if (has(PlannedControl::Kind::toggle) || has(PlannedControl::Kind::color) || has(PlannedControl::Kind::point)) {
            text += R"(function control(name, kind, label, value) {
    controls[name] = QL_initParam(name, kind, label);
    QL_setParamValue(controls[name], value);
}

)";
        }
        if (hasCopies() || !plan.targets.empty()) {
            text += R"(function newTarget(sides, wrap) {
    return { sides: sides, wrap: wrap, front: 0 };
}

)";
        }
        if (hasCopies()) {
            text += R"(// The shader that turns a picture over. While there is no picture, transparent black.
function copy(name, sampler, wrap) {
    copies[name] = newTarget(['front'], wrap);
    copies[name].shader = QL_initShader(name + ' copy',
        'uniform vec4 Texture0Params;\nuniform sampler2D ' + sampler + ';\n' +
        'void main() {\n    gl_FragColor = Texture0Params.x > 0.0 ? texture2D(' + sampler +
        ', gl_TexCoord[0].st) : vec4(0.0);\n}\n');
}

)";
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

    static std::string wrapOf(const PlannedImage& image) { return image.isTiled ? "0x2901" : "QL_GL.CLAMP_TO_EDGE"; }

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
        if (needsClear())
            line("    shaders.clear = QL_initShader('clear', 'void main() {{ gl_FragColor = vec4(0.0); }}');");
        for (const PlannedImage& image : plan.images) {
            if (!isRead(image.name)) continue;
            if (image.source == PlannedImage::Source::silence) {
                line("    copies.{} = newTarget(['front'], QL_GL.CLAMP_TO_EDGE);", image.name);
                line("    copies.{0}.shader = QL_initShader('{0} silence',", image.name);
                line("        'void main() {{ gl_FragColor = {}; }}');", image.color);
                continue;
            }
            line("    copy('{}', '{}', {});{}", image.name,
                 image.source == PlannedImage::Source::layer ? image.name : "picture", wrapOf(image),
                 image.isTiled ? "  // GL's number for repeating; QL_GL.REPEAT has another" : "");
            if (image.source == PlannedImage::Source::file)
                line("    copies.{}.picture = QL_initTexture({});", image.name, ScriptLiteral(image.fileName));
        }
        for (const PlannedTarget& target : plan.targets) {
            if (!target.isPersistent)
                line("    targets.{} = newTarget(['front', 'back'], QL_GL.CLAMP_TO_EDGE);", target.name);
        }
        line("}}");
    }

    void helpers() {
        if (hasCopies() || !plan.targets.empty()) text += kFit;
        const auto readsFrom = [this](PlannedImage::Source source) {
            return std::ranges::any_of(plan.images,
                                       [&](const PlannedImage& i) { return i.source == source && isRead(i.name); });
        };
        if (readsFrom(PlannedImage::Source::input) || readsFrom(PlannedImage::Source::file)) text += kTurnOver;
        if (readsFrom(PlannedImage::Source::layer)) text += kTurnLayer;
        bool hasPlaces = false;
        bool hasMouse = false;
        for (const PlannedControl& control : plan.controls) {
            if (control.kind != PlannedControl::Kind::point) continue;
            (control.isMouse ? hasMouse : hasPlaces) = true;
        }
        if (hasPlaces) text += kPlace;
        if (hasMouse) text += kMouse;
        const bool isSized = std::ranges::any_of(
            plan.targets, [](const PlannedTarget& t) { return !t.width.empty() || !t.height.empty(); });
        if (isSized) {
            text += R"(
// A side of a target: whole pixels, as many as every driver takes.
function whole(side) {
    return Math.floor(Math.min(Math.max(side, 1), 8192)) || 1;
}
)";
        }
        if (isPersistent) {
            line("");
            line("function newMemory(output) {{");
            line("    return {{");
            line("        output: output, time: 0, index: 0, delta: 0, width: 0, height: 0,");
            line("        targets: {{");
            std::string sides;
            for (const PlannedTarget& target : plan.targets) {
                if (!target.isPersistent) continue;
                sides += fmt::format("{}            {}: newTarget(['front', 'back', 'start'], QL_GL.CLAMP_TO_EDGE)",
                                     sides.empty() ? "" : ",\n", target.name);
            }
            line("{}", sides);
            line("        }}");
            line("    }};");
            line("}}");
            text += kRecall;
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

    static bool isSentAsItIs(const PlannedControl& control) {
        return control.uniform == control.name && control.kind != PlannedControl::Kind::popup &&
               control.kind != PlannedControl::Kind::point;
    }

    void pass(const PlannedShader& shader) {
        const bool needsIndex = shader.uniforms.contains("PASSINDEX");
        line("");
        line("function render{}(target, width, height{}) {{", Capitalized(shader.name), needsIndex ? ", index" : "");
        line("    var shader = shaders.{};", shader.name);
        for (const BuiltIn& builtIn : kBuiltIns) {
            if (shader.uniforms.contains(builtIn.name))
                line("    QL_setShaderParamVal(shader, '{}', {});", builtIn.name, builtIn.value);
        }
        for (const PlannedSampler& sampler : shader.samplers) {
            const std::string picture = sampler.picture.empty() ? "0" : "pictures." + sampler.picture;
            line("    QL_setShaderParamVal(shader, '{}', {});", sampler.uniform, picture);
            if (sampler.size.empty()) continue;
            if (sampler.picture.empty())
                line("    QL_setShaderParamVal(shader, '{}', [0, 0]);", sampler.size);
            else
                line("    QL_setShaderParamVal(shader, '{}', QL_getSurfaceDim({}).slice(0, 2));", sampler.size,
                     picture);
        }
        for (const PlannedControl& control : plan.controls) {
            if (!shader.uniforms.contains(control.uniform)) continue;
            if (isSentAsItIs(control))
                line("    QL_setShaderParam(shader, controls.{});", control.name);
            else
                line("    QL_setShaderParamVal(shader, '{}', {});", control.uniform, valueOf(control));
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
            line("// quillon-ignore frame-order: each frame goes on from the one before, and is meant to");
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
            line("    pictures.{0} = {1}.{0}.front;", target.name, ownerOf(target));
        }
        if (isPersistent || std::ranges::any_of(plan.passes, [](const PlannedPass& p) { return !p.target.empty(); })) {
            drawPasses();
        } else {
            line("");
            for (const PlannedPass& planned : plan.passes) drawFrame(planned);
        }
        line("}}");
    }

    static std::string ownerOf(const PlannedTarget& target) {
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
            line("    into({}.{}, '{}', render{}, {});", ownerOf(*plan.findTarget(planned.target)), planned.target,
                 planned.target, Capitalized(shader.name), planned.index);
        }
        const PlannedPass& last = plan.passes.back();
        if (!last.target.empty()) {
            line("    // The last pass's target is the frame.");
            line("    QL_blitRenderTarget(pictures.{}, output, false, true);", last.target);
        }
    }

    const EffectPlan& plan;
    std::string text;
    bool isPersistent = false;
    bool countsFrames = false;
    bool needsRate = false;
};

}  // namespace

const BuiltIn* FindBuiltIn(const std::string& name) {
    for (const BuiltIn& builtIn : kBuiltIns) {
        if (name == builtIn.name) return &builtIn;
    }
    return nullptr;
}

std::string WriteScript(const EffectPlan& plan) {
    return Writer(plan).write();
}

}  // namespace quillon::cli
