// Planted once: a look-up that believes every id. What the row cannot see: a native stack that nobody looks at.

#include <array>
#include <exception>
#include <functional>
#include <random>

#include "Effects.h"
#include "Ground.h"
#include "StackThread.h"
#include "support/EngineTest.h"

namespace quillon::prove {

namespace {

// Entities of each kind in `ids`, and values that few expect, in `odd`. Two of them release what the call is about.
const char* const kStage =
    "var ids = [], keep = [], depth = 0, count = 0;\n"
    "function make() { keep = ids; ids = [QL_initParam('p' + count, 1, 'P'), QL_initShader('s' + count++,"
    " 'uniform float f; uniform sampler2D t; void main() { gl_FragColor = texture2D(t, vec2(f)); }'),"
    " QL_initRenderTarget(3, 2, 8), QL_initTexture('none'), QL_textureToSurface(QL_initRenderTarget(2, 2, 32))]; }\n"
    "function releaseAll() { ids.forEach(function (id) { QL_release(id); }); }\n"
    "var odd = [undefined, null, NaN, -1, 1e308, -Infinity, '', Array(3000).join('\\u4e00'), [], {},\n"
    "  { valueOf: function () { releaseAll(); return 1; }, toString: function () { releaseAll(); return 'f'; } },\n"
    "  { valueOf: function () { throw new Error('no'); }, toString: function () { throw 1; } }];\n"
    "odd[8] = { get length() { releaseAll(); return 4; } };\n";

// Every native with every odd value at every place, and each kind of id as the first argument. What the contract ends
// the process for is left out: releasing an id of no kind, and quantizing a surface that has lost its pixels.
const char* const kSweep =
    "function sweep(name, places) { for (var place = 0; place < places; ++place) for (var o = 0; o < odd.length; ++o)\n"
    "  for (var kind = 0; kind < 5; ++kind) { make(); var list = [ids[kind], 2, 2, 8, 1, 1];\n"
    "    if (name === 'QL_setShaderParamVal' || name === 'QL_getShaderParamType') list[1] = 'f';\n"
    "    if (name === 'QL_surfaceCopyTo') list[1] = ids[2];\n"
    "    if (name === 'QL_renderShader') { list = [ids[1], ids[2], true, [0, 0, 2, 2]]; }\n"
    "    list[place] = odd[o]; try { this[name].apply(null, list.slice(0, places)); } catch (error) {} releaseAll(); } "
    "}\n";

// What a script may do at any moment.
constexpr std::array kDeeds = {
    "(function f() { f(); })();",
    "(function f(n) { [1].map(function () { f(n + 1); }); })(0);",
    "var nest = []; for (var i = 0; i < 20000; ++i) nest = [nest]; JSON.stringify(nest);",
    "JSON.parse(Array(20000).join('[') + Array(20000).join(']'));",
    "eval(Array(5000).join('(') + '1' + Array(5000).join(')'));",
    "new RegExp(Array(2000).join('(') + 'a' + Array(2000).join(')')).exec('a');",
    "QL_renderShader = QL_getSequenceRT = QL_initShader = null;",
    "Object.prototype.toString = Array.prototype.map = function () { throw 1; };",
    "Object.defineProperty(Object.prototype, 'width', { get: function () { releaseAll(); return 1; } });",
    "Duktape.errCreate = function () { throw 2; }; nothing();",
    "Duktape.fin({}, function () { releaseAll(); make(); throw 3; });",
    // Each into a separate place, also where the globals are frozen: two that put their objects into one place push
    // each other out for ever, which is a script that never ends.
    "Duktape.fin({ a: 1 }, function (o) { odd[odd.length] = o; QL_release(QL_getSequenceRT()); });",
    "QL_release(QL_getSequenceRT()); QL_release(QL_getSequenceTexture());",
    "releaseAll(); make();",
    "for (var i = 0; i < 50; ++i) make();",
    "var c = new Duktape.Thread(function (x) { Duktape.Thread.yield(QL_getTime()); QL_getSurfaceDim({ valueOf: "
    "function () { Duktape.Thread.yield(1); } }); }); Duktape.Thread.resume(c); Duktape.Thread.resume(c);",
    // Without the bound it never ends: coroutines nest without native stack.
    "var n = 0; function f() { if (++n < 300) Duktape.Thread.resume(new Duktape.Thread(f)); else f(); } f();",
    "draw = setup = updateUIFlags = preRender = undefined;",
    "draw = { toString: function () { throw 4; } };",
    "QL_setOutputExtent(-1, 1 << 30);",
    "QL_setOutputExtent(1e9, 1e9);",
    "QL_initRenderTarget(1 << 30, 1 << 30, 32); QL_initRenderTarget(0, 0, 0); QL_initSurface(-1, -1, -1);",
    "QL_initShader('loop', 'void main() { main(); }'); QL_initShader('\\0', '\\0\\uffff#error'); "
    "QL_initShader(Array(9999).join('s'), Array(9999).join('/*'));",
    "var big = []; try { for (var i = 0; i < 300; ++i) big.push(new Uint8Array(1 << 20)); } finally { big = null; }",
    "String.fromCharCode = parseInt = isNaN = Math = undefined;",
    "this.QL_getParamValue = QL_release; delete this.Object; delete this.Array;",
    "Object.freeze(this); Object.preventExtensions(QL_GL);",
    "QL_setParamValue(ids[0], { get 0() { releaseAll(); return 1; }, length: 4 });",
    "QL_setShaderParamVal(ids[1], 'f', new Proxy([], { get: function () { releaseAll(); return 1; } }));",
    "with (odd) { forEach(function (o) { try { QL_getSurfaceDim(o); } catch (e) {} }); }",
    "throw { toString: function () { throw this; } };",
};

test::Files Script(const std::string& text) {
    return {{"fx.js", text}, {"config.xml", test::kConfig}};
}

test::Files RandomScript(std::mt19937& random) {
    std::string text = kStage;
    for (const char* place : {"", "setup", "draw", "preRender", "updateUIFlags"}) {
        std::string deeds = *place == '\0' ? "" : "make(); ";
        for (unsigned i = 0; i < 1 + random() % 3; ++i) deeds += std::string(kDeeds[random() % kDeeds.size()]) + "\n";
        // A deed that throws ends those after it, unless it is the only one.
        if (random() % 2) deeds = "try { " + deeds + " } catch (error) {}";
        text +=
            *place == '\0' ? (random() % 2 ? deeds : "") : "function " + std::string(place) + "() { " + deeds + " }\n";
    }
    return Script(text);
}

// On a thread with a stack of this size, as hosts start them. What it throws is thrown on.
void OnStack(std::size_t bytes, const std::function<void()>& body) {
    std::exception_ptr thrown;
    RunOnThread(bytes, [&] {
        try {
            body();
        } catch (...) {
            thrown = std::current_exception();
        }
    });
    if (thrown) std::rethrow_exception(thrown);
}

}  // namespace

std::string Hostile(bool isLong) {
    const LoadedEffect good(ThreePasses());
    const host::EffectModule module = good.effect();
    const auto goodFrame = [&] {
        host::HostSession session(module, Unrecorded());
        session.start();
        return RenderedBytes(session.apply(), {WorldOf(session, 6, 5, 8, 9)}, host::Route::smart);
    };
    const test::Bytes wanted = goodFrame();
    std::size_t mostControls = 0;
    // Another package in the same module: the effect finds it by the handle that its host names.
    const auto play = [&](const test::Files& files) {
        const test::TestEffect carrier(files);
        host::HostSession session(host::EffectModule(module.entry(), carrier.module()), Unrecorded());
        if (session.globalSetup().error != 0 || session.paramsSetup().error != 0) return;
        // Which controls a host has is known once a process: no effect has fewer here than any one before.
        while (session.parameters().size() < mostControls) session.addParameter({});
        mostControls = session.parameters().size();
        host::HostInstance& instance = session.newInstance();
        session.sequenceSetup(instance);
        session.updateParamsUI(instance);
        for (int frame = 0; frame < 2; ++frame) session.renderFrame(instance, {WorldOf(session, 6, 5, 8, 9)});
        session.userChangedParam(instance, 1);
        session.sequenceSetdown(instance);
    };
    constexpr std::size_t kStacks[] = {std::size_t{512} << 10, std::size_t{1} << 20, std::size_t{8} << 20};
    const std::pair<const char*, int> kNatives[] = {
        {"QL_initParam", 3},        {"QL_getParamValue", 1},      {"QL_setParamValue", 2},
        {"QL_setParamMinMax", 3},   {"QL_setParamChoices", 2},    {"QL_setParamPrecision", 2},
        {"QL_setParamEnabled", 2},  {"QL_setParamFlags", 2},      {"QL_getParamFlags", 1},
        {"QL_initRenderTarget", 3}, {"QL_blitRenderTarget", 4},   {"QL_getSurfaceDim", 1},
        {"QL_initShader", 2},       {"QL_setShaderParam", 2},     {"QL_setShaderParamVal", 3},
        {"QL_renderShader", 4},     {"QL_getShaderParamType", 2}, {"QL_getShaderError", 1},
        {"QL_initTexture", 1},      {"QL_setTextureParam", 3},    {"QL_initSurface", 3},
        {"QL_textureToSurface", 1}, {"QL_surfaceToTexture", 1},   {"QL_surfaceQuantize", 6},
        {"QL_surfaceCopyTo", 3},    {"QL_setOutputExtent", 2},
    };
    for (const auto& [name, places] : kNatives) {
        NowAt(name);
        OnStack(kStacks[1], [&, name = name, places = places] {
            play(Script(std::string(kStage) + kSweep + "function setup() {} function draw() { sweep('" + name + "', " +
                        std::to_string(places) + "); }"));
            Require(goodFrame() == wanted, std::string("another picture after ") + name);
        });
    }
    const int scripts = isLong ? 20'000 : 500;
    for (int i = 0; i < scripts; ++i) {
        NowAt("script " + std::to_string(i));
        std::mt19937 random(static_cast<unsigned>(i));
        const test::Files files = RandomScript(random);
        OnStack(kStacks[i % 3], [&] { play(files); });
        if (i % 5 != 4) continue;
        OnStack(kStacks[2],
                [&] { Require(goodFrame() == wanted, "another picture after script " + std::to_string(i)); });
    }
    return std::to_string(std::size(kNatives)) + " natives with odd arguments, " + std::to_string(scripts) + " scripts";
}

}  // namespace quillon::prove
