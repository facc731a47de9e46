// Calls of the script API, by the engine on real GL. Each line is evaluated by itself, so that a wrong one does not end
// the others: those that begin with "draw ", "size " or "panel " in draw(), preRender() and updateUIFlags(), all others
// in setup().
//
// Planted once: a time limit that no script meets.

#include <nlohmann/json.hpp>
#include <string>

#include "GivenPackage.h"
#include "Input.h"
#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "script/NativeCalls.h"
#include "script/ScriptObserver.h"
#include "script/Scripting.h"
#include "script/TimeLimit.h"

using namespace quillon;

namespace {

// What the contract ends a process for is left out: releasing an id of no kind, and quantizing a surface without
// pixels, which has some only where it was read back from a target while the script drew. Large targets only take time.
constexpr const char* kStage = R"(
(function (global) {
    var release = QL_release, quantize = QL_surfaceQuantize, surface = QL_initSurface, target = QL_initRenderTarget;
    var read = QL_textureToSurface, toTexture = QL_surfaceToTexture, copyTo = QL_surfaceCopyTo, evaluate = eval;
    var usable = {}, sound = {}, draws = false;
    QL_release = function (id) { id = id >>> 0; return [0, 1, 2, 3, 4, 6].indexOf(id >>> 24) >= 0 && release(id); };
    QL_initSurface = function (w, h, b) { return surface(w % 300, h % 300, b); };
    QL_initRenderTarget = function (w, h, b) {
        w = w >>> 0, h = h >>> 0, b = b >>> 0;
        var id = target(w % 300, h % 300, b);
        usable[id] = w % 300 > 0 && h % 300 > 0 && (b === 8 || b === 16 || b === 32);
        return id;
    };
    QL_textureToSurface = function (id) {
        id = id >>> 0;
        var made = read(id);
        sound[made] = draws && usable[id] === true;
        return made;
    };
    QL_surfaceToTexture = function (id) { id = id >>> 0; delete sound[id]; return toTexture(id); };
    QL_surfaceCopyTo = function (id, to, flip) { id = id >>> 0; delete sound[id]; return copyTo(id, to, flip); };
    QL_surfaceQuantize = function (id, gray, mode, dither, value, serpentine) {
        id = id >>> 0, mode = +mode, dither = +dither, value = +value;
        return sound[id] === true && quantize(id, gray, mode, dither, value, serpentine);
    };
    global.run = function (lines, isInDraw) {
        draws = isInDraw;
        for (var i = 0; i < lines.length; ++i) try { evaluate(lines[i]); } catch (error) { }
    };
})(this);
var a, b, c, d, s, t, odd = { valueOf: function () { QL_release(a); return 1; } };
)";

struct Place {
    const char* start;
    const char* function;
};
constexpr Place kPlaces[] = {{"draw ", "draw"}, {"size ", "preRender"}, {"panel ", "updateUIFlags"}, {"", "setup"}};

std::string ScriptOf(std::string_view input) {
    std::string bodies[std::size(kPlaces)];
    while (!input.empty()) {
        std::string_view line = input.substr(0, input.find('\n'));
        input.remove_prefix(std::min(input.size(), line.size() + 1));
        std::size_t place = 0;
        while (!line.starts_with(kPlaces[place].start)) ++place;
        line.remove_prefix(std::string_view(kPlaces[place].start).size());
        bodies[place] += nlohmann::json(line).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace) + ",";
    }
    std::string script = kStage;
    for (std::size_t i = 0; i < std::size(kPlaces); ++i)
        script += std::string("function ") + kPlaces[i].function + "() { run([" + bodies[i] + "], " +
                  (i == 0 ? "true" : "false") + "); }\n";
    return script;
}

// Reads all that can be read of each call, as `quillon check` does with some of it.
class Listener final : public ScriptObserver, public NativeListener {
public:
    void heapOpened(duk_hthread* heap) override { TellOfNativeCalls(heap, *this); }
    void before(const NativeCall& call) override {
        fuzz::Require(call.name().starts_with("QL_"), "a native has its name");
        for (std::size_t i = 0; i <= call.count(); ++i) {
            const std::optional<double> number = call.numberOf(i);
            fuzz::Require(i < call.count() || call.typeOf(i) == NativeCall::Type::missing, "nothing is missing");
            fuzz::Require(call.typeOf(i) != NativeCall::Type::number || number, "a number is one");
            fuzz::Require(call.textOf(i).empty() || call.typeOf(i) == NativeCall::Type::text, "a text is one");
            fuzz::Require(call.lengthOf(i) == 0 || call.typeOf(i) == NativeCall::Type::array, "an array is one");
            call.idOf(i);
            call.isTrue(i);
        }
        int lines[8];
        const std::size_t count = call.lines(lines);
        fuzz::Require(count <= std::size(lines), "there are as many lines as there is room for");
    }
    void after(const NativeCall& call) override {
        fuzz::Require(!call.isRefused() || call.resultNumber() == 0, "no id");
    }
};

void ReadError(const ScriptError& error) {
    fuzz::Require(!error.message.empty(), "an error has words");
}

void DrawFrames(IPlugin& engine) {
    SequenceHandle* const instance = engine.createSequence();
    engine.selectSequence(instance);
    engine.updateUIFlags();
    for (const std::uint32_t depth : {8u, 16u, 32u}) {
        const EngineLock lock(engine);
        const std::size_t rowBytes = std::size_t{6} * depth / 2;  // a pixel of it is padding
        const std::vector<std::byte> input(rowBytes * 3, std::byte{0x40});
        std::uint32_t width = 5, height = 3;
        engine.preRender(width, height, &width, &height);
        engine.setLayerPixels(kInputLayer, input.data(), 5, 3, depth, rowBytes);
        for (std::uint32_t i = 0; i < engine.parameterCount(); ++i)
            if (engine.parameterInfo(i)->kind == LAYER) engine.setLayerPixels(i, input.data(), 5, 3, depth, rowBytes);
        engine.draw(0.5, std::min(width, 64u), std::min(height, 64u), depth, 1);
        if (const void* pixels = engine.mapResult()) engine.unmapResult(pixels);
    }
    engine.destroySequence(instance);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace std::chrono_literals;
    TimeLimit::Set(300ms);
    fuzz::GiveFiles({{"fx.js", ScriptOf(fuzz::TextOf(data, size))},
                     {"config.xml", "<FXNAME>Fuzz</FXNAME><FLAGS2>5120</FLAGS2>"},
                     {"copy.frag",
                      "uniform sampler2D t; uniform float f; uniform vec4 v; uniform int i; varying vec2 p;\n"
                      "void main() { gl_FragColor = texture2D(t, vec2(f)) * v + float(i); }"},
                     {"vectors.frag",
                      "uniform bool b; uniform vec2 v2; uniform vec3 v3; uniform vec4 context_extent;\n"
                      "void main() { gl_FragColor = vec4(v2, v3.x, b ? v3.y : context_extent.x); }"},
                     {"array.frag", "uniform float f[3]; void main() { gl_FragColor = vec4(f[0], f[1], f[2], 1); }"},
                     {"cube.frag", "uniform samplerCube c; void main() { gl_FragColor = textureCube(c, vec3(1)); }"},
                     {"unlinked.frag", "vec4 f(); void main() { gl_FragColor = f(); }"},
                     {"wrong.frag", "void main() { x = 1; }"},
                     {"dot.tga", std::string_view("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0\1\2\3", 21)}});
    static Listener listener;
    static const bool isHeard = [] {
        Scripting::AddObserver(listener);
        Scripting::SetErrorObserver(ReadError);
        return true;
    }();
    IPlugin& engine = AEQuillon2::instance();
    fuzz::Require(isHeard && engine.init(nullptr, nullptr), "there is GL");
    std::string identity;
    fuzz::Require(engine.identityString(identity, 1) == "Fuzz" && engine.effectFlags2() == 5120, "the effect is ours");
    DrawFrames(engine);
    std::string errors;
    engine.shaderErrors(errors);
    {
        const EngineLock lock(engine);
        Scripting::instance().Close();
        Scripting::instance().Open();
        fuzz::Require(engine.parameterCount() == 0, "nothing of a script outlives its end");
    }
    return 0;
}
