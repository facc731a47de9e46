#include "cli/check/script/CheckScript.h"

#include <duktape.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <span>
#include <sstream>

#include "support/BuiltFiles.h"

namespace quillon::cli {

namespace {

// "LINE:COLUMN RULE TEXT; REMEDY", without the "script/" of the rule, a line each.
std::string FindingsIn(std::string_view script) {
    std::string lines;
    for (const Diagnostic& found : CheckScriptText("fx.js", script)) {
        EXPECT_EQ(found.path, "fx.js");
        if (found.rule == "script/no-entry-point") continue;  // parts of scripts are checked here
        EXPECT_FALSE(found.remedy.empty());
        lines += std::to_string(found.line) + ":" + std::to_string(found.column) + " " + found.rule.substr(7) + " " +
                 found.text + "; " + found.remedy + "\n";
    }
    return lines;
}

struct Case {
    const char* script;
    const char* begins;  // of the findings, a line each; empty for none at all
};

// Each finding begins as its line says, and there are no others.
void ExpectFindings(std::span<const Case> cases) {
    for (const Case& row : cases) {
        std::istringstream found(FindingsIn(row.script)), expected(row.begins);
        std::string foundLine, expectedLine;
        while (std::getline(expected, expectedLine)) {
            std::getline(found, foundLine);
            EXPECT_TRUE(foundLine.starts_with(expectedLine))
                << row.script << "\nfound:    " << foundLine << "\nexpected: " << expectedLine;
            foundLine.clear();
        }
        while (std::getline(found, foundLine)) ADD_FAILURE() << row.script << "\nfound:    " << foundLine;
    }
}

}  // namespace

TEST(CheckScriptTest, FindsEachUseOfANameThatNothingDeclares) {
    constexpr Case kCases[] = {
        {"function f(a) { return a + b; } f(b);",
         "1:28 undeclared-name nothing declares b\n1:35 undeclared-name nothing declares b"},
        {"var picture = 1;\nvar x = pictrue;", "2:9 undeclared-name nothing declares pictrue; did you mean picture?"},
        {"function f(radius) { return radus; }", "1:29 undeclared-name nothing declares radus; did you mean radius?"},
        {"getTime();", "1:1 undeclared-name nothing declares getTime; did you mean QL_getTime?"},
        {"QL.getTime();", "1:1 undeclared-name nothing declares QL; did you mean QL_getTime?"},
        {"math.sin(1);", "1:1 undeclared-name nothing declares math; did you mean Math?"},
        {"var v = abcdefgh;", "1:9 undeclared-name nothing declares abcdefgh; declare it with var"},
        {"count += 1; total++;",
         "1:1 undeclared-name nothing declares count\n1:13 undeclared-name nothing declares total"},
        {"function f() { 'use strict'; strictly = 1; }", "1:30 undeclared-name nothing declares strictly"},
        {"(function named() {})(); named();", "1:26 undeclared-name nothing declares named"},
        {"try { var a = 1; } catch (e) { } a = e;", "1:38 undeclared-name nothing declares e"},
        {"arguments;", "1:1 undeclared-name nothing declares arguments"},
        {"updateUIFlags();", "1:1 undeclared-name nothing declares updateUIFlags"},
        {"var o = { key: value, get g() { return inner; } };",
         "1:16 undeclared-name nothing declares value\n1:40 undeclared-name nothing declares inner"},
        {"x: for (;;) { break x; } x;", "1:26 undeclared-name nothing declares x"},
        {"var a = 4 / b / 2, c = /b/g, d = c\n/e/1;",
         "1:13 undeclared-name nothing declares b\n2:2 undeclared-name nothing declares e"},
        {"with ({}) { a; } a;", "1:18 undeclared-name nothing declares a"},
        {"function A() { this.width = 1; } A.prototype.f = function () { return height; };",
         "1:71 undeclared-name nothing declares height"},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, TakesEveryWayToDeclareAName) {
    constexpr Case kCases[] = {
        {"later(); function later() { return hoisted; } var hoisted;", ""},
        {"a = 1; function f() { b = a; } for (c in {}) { b; c; }", ""},
        {"(function named() { named(); })(); function f() { arguments; }", ""},
        {"try { maybe(); } catch (e) { e; var inside; } inside;", ""},
        {"if (typeof window !== 'undefined') window.open(); var w = typeof (other);", ""},
        {"this.made = 1; made; globalThis['also'] = 2; also;", ""},
        {"(function (root) { root.exported = 1; })(this); exported;", ""},
        {"(function () { var self = this; self.Tool = 1; })(); Tool;", ""},
        {"Object.defineProperty(this, 'given', { value: 1 }); given;", ""},
        {"eval('var x = 1'); x; ", ""},
        {"new Function('y = 1')(); y;", ""},
        {"for (var k in {}) this[k] = 1; anything;", ""},
        {"switch (1) { case 1: function g() {} } g(); if (1) { function h() {} } h();", ""},
        {"const k = 1; for (var i = k in {} ? 1 : 2; i < 3; i++) ; var \\u0061b = 1; ab; delete gone;", ""},
        {"var let = 1; let = 2; let\nvar of = let, async = of, get = { get: 1, set: 2, async: async }; get.in", ""},
        {"var o = { a, m() { return o; }, ['k' + 1]: 2 ** 3, 0x10: 0b11 }, a = new.target;", ""},
        {"a = 1\n++a\nvar b = a\n(a)\nreturn_ = function () { return\n/x/ }\ndo ; while (0) a\n<!-- c\n--> d", ""},
        {"var s = 'it\\\n\\'s', r = /[/\\]]\\/(?:a)/gim.test(s) ? s.a / s.b : s /= 2; a: { break a }", ""},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, KnowsAllThatTheScriptHeapHas) {
    const std::unique_ptr<duk_context, decltype(&duk_destroy_heap)> heap(duk_create_heap_default(), duk_destroy_heap);
    duk_eval_string(heap.get(), R"((function (global) {
        var uses = [];
        Object.getOwnPropertyNames(global).forEach(function (name) {
            uses.push(name);
            var value = global[name];
            if (value === null || (typeof value !== 'object' && typeof value !== 'function')) return;
            Object.getOwnPropertyNames(value).concat(Object.getOwnPropertyNames(value.prototype || {})).forEach(
                function (member) { uses.push(name + '.' + member, name + '["' + member + '"]()'); });
        });
        return uses.join('\n');
    })(this))");
    std::istringstream uses(duk_get_string(heap.get(), -1));
    int count = 0;
    for (std::string use; std::getline(uses, use); ++count) EXPECT_EQ(FindingsIn("var a = " + use + ";"), "");
    EXPECT_GT(count, 500);
    EXPECT_NE(FindingsIn("var a = Maths.sin(1);"), "");
}

TEST(CheckScriptTest, FindsNothingInTheSampleEffects) {
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(test::SourceFolder() / "effects")) {
        std::ifstream file(entry.path() / "fx.js", std::ios::binary);
        const std::string script{std::istreambuf_iterator<char>(file), {}};
        if (script.empty()) continue;
        ++count;
        EXPECT_EQ(FindingsIn(script), "") << entry.path();
    }
    EXPECT_GE(count, 15);
}

TEST(CheckScriptTest, FindsWrongUseOfTheScriptApi) {
    constexpr Case kCases[] = {
        {"QL_Type.FLOT; QL_GL['NEARST']; QL_ParamFlags.scalebywidth;",
         "1:9 unknown-member QL_Type has no FLOT; did you mean FLOAT?\n"
         "1:21 unknown-member QL_GL has no NEARST; did you mean NEAREST?\n"
         "1:46 unknown-member QL_ParamFlags has no scalebywidth; did you mean ScaleByWidth?"},
        {"var t = QL_Type.WHATEVER, k = 'X', u = QL_Type[k];", "1:17 unknown-member QL_Type has no WHATEVER; docs/"},
        {"QL_Type.FLOAT; QL_GL.hasOwnProperty('X'); if (QL_GL.MINE) ; typeof QL_GL.MINE;", ""},
        {"QL_Type.MINE = 20; QL_Type.MINE; QL_Type.OTHER;", ""},
        {"function f(QL_GL) { return QL_GL.MINE; }", ""},
        {"QL_getTime(1); QL_initParam('a'); QL_renderShader(1, 2, 3, [0, 0, 1, 1], 5);",
         "1:1 wrong-argument-count QL_getTime takes no arguments, and this call gives 1\n"
         "1:16 wrong-argument-count QL_initParam takes 2 or 3 arguments, and this call gives 1\n"
         "1:35 wrong-argument-count QL_renderShader takes 2 to 4 arguments, and this call gives 5"},
        {"QL_release(); QL_setParamMinMax(1, 2);",
         "1:1 wrong-argument-count QL_release takes 1 argument, and this call gives 0\n"
         "1:15 wrong-argument-count QL_setParamMinMax takes 3 arguments, and this call gives 2"},
        {"QL_initParam('a', 1); QL_initShader('x', 'text'); QL_blitRenderTarget(1, 2); [1].forEach(QL_release);", ""},
        {"var QL_release = 1; function QL_getTime() {} function f(QL_initSurface) {}",
         "1:5 shadowed-function this variable hides the function QL_release\n"
         "1:30 shadowed-function this function hides the function QL_getTime\n"
         "1:57 shadowed-function this parameter hides the function QL_initSurface"},
        {"function prerender() {} Draw = function () {}; function updateUiFlags() {} function setup() {}",
         "1:10 entry-point-capitals the host calls preRender, and never prerender; write preRender\n"
         "1:32 entry-point-capitals the host calls draw, and never Draw; write draw\n"
         "1:57 entry-point-capitals the host calls updateUIFlags, and never updateUiFlags"},
        {"function draw() { new Draw(); } function Draw() {} function prerender() {} prerender();", ""},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, FindsCallsOfMethodsThatNoObjectHas) {
    constexpr Case kCases[] = {
        {"Math.clamp(1, 2, 3); Math.floot(1);",
         "1:6 unknown-member Math has no function clamp; it is newer\n"
         "1:27 unknown-member Math has no function floot; did you mean floor?"},
        {"var a = [1]; a.pussh(2); 'a'.padStart(2); (a.x || a).flatMap(1);",
         "1:16 unknown-member no object has a function pussh; did you mean push?\n"
         "1:30 unknown-member no object has a function padStart; it is newer\n"
         "1:54 unknown-member no object has a function flatMap"},
        {"function A() {} A.prototype.update = function () {}; new A().updaet();",
         "1:62 unknown-member no object has a function updaet; did you mean update?"},
        {"Math.clamp = function () {}; Math.clamp(1); if (Array.from) Array.from(1); [1].find && [1].find();", ""},
        {"var o = { one: 1, get two() {}, 'three': 3 }; o.one(); o.two(); o.three(); o['four'] = 4; o.four();", ""},
        {"var o = {}; 'five|six'.split('|').forEach(function (n) { o[n] = n; }); o.six(); this.f(); function f() {}",
         ""},
        {"var o = {}; ['x'].forEach(function (n) { o['get' + n] = n; }); o.getx();", ""},
        {"try { [1].find(); } catch (e) { e.stack.split('a'); } arguments_ = function () { arguments.callee(); };", ""},
        {"eval('Math.f = 1'); Math.f(); ", ""},
        {"this.QL_getTime(); globalThis.QL_getTime(); globalThis.parseInt(1);", ""},
        {"var c = typeof console !== 'undefined' ? console : null; if (c) c.warn(1); if (this.console) "
         "this.console.warn(1);",
         ""},
        {"if (typeof host === 'object') { var page = host.page(); page.show(); } Math.lerp();",
         "1:77 unknown-member Math has no function lerp"},
        {"/a/.exec('b').index.toFixed(1); new Date().getTime(); (1).toString(); JSON.parse('1').x; f.call(); f = 1;",
         ""},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, WarnsOfAConsoleThatHostsLack) {
    constexpr const char* kGuarded[] = {
        "if (typeof console !== 'undefined') console.log(1);",
        "if (typeof console === 'undefined') { other(); } else console.log(1); function other() {}",
        "typeof console != 'undefined' && console.log(1);",
        "typeof console === 'undefined' || console.log(1);",
        "var a = 'object' === typeof console ? console : null;",
        "if (a && !(typeof console === 'undefined') && a) { (function () { console.log(1); })(); } var a;",
        "function log(t) { if (typeof console === 'undefined' || !t) return; console.log(t); }",
        ("function log() { if (typeof console === 'undefined') { return; } [1].map(function () { console.x; print; }); "
         "}"
         "function print() {}"),
        "var has = typeof console !== 'undefined'; if (has) console.log(1);",
        "if (this.console) console.log(1); if ('console' in this) console.log(1);",
        "try { console.log(1); } catch (e) {}",
        "var console = { log: function () {} }; console.log(1);",
        "if (typeof print === 'function') print(1);",
    };
    for (const char* const script : kGuarded) EXPECT_EQ(FindingsIn(script), "") << script;
    constexpr Case kCases[] = {
        {"console.log(1); print(2);",
         "1:1 unguarded-console hosts have no console: there the script ends here with an error; write if (typeof "
         "console\n"
         "1:17 unguarded-console hosts have no print"},
        {"if (typeof console === 'undefined') console.log(1);", "1:37 unguarded-console"},
        {"if (typeof print !== 'undefined') console.log(1);", "1:35 unguarded-console"},
        {"console.log(1); if (typeof console === 'undefined') throw 1;", "1:1 unguarded-console"},
        {"if (typeof console !== 'undefined' || 1) console.log(1);", "1:42 unguarded-console"},
        {"try { } finally { console.log(1); }", "1:19 unguarded-console"},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, WarnsOfChanceInAFrame) {
    constexpr Case kCases[] = {
        {"function draw() { Math.random(); }", "1:19 chance-in-draw Math.random in draw() makes"},
        {"var draw = function () { noise(); }; function noise() { return [1].map(seed); }\n"
         "var seed = function () { return new Date(); };",
         "2:33 chance-in-draw new Date() in seed(), which draw() uses, makes"},
        {"function preRender() { Date.now(); Date(); }",
         "1:24 chance-in-draw Date.now in preRender()\n1:36 chance-in-draw Date() in preRender()"},
        {"function draw() { new Date(2020, 1, 1); Date.UTC(1, 2); } function setup() { Math.random(); }", ""},
        {"function draw() { Math.random(); } Math.random = function () { return 0.5; };", ""},
        {"function draw(Math) { Math.random(); }", ""},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, NamesWhatTheLanguageDoesNotHaveYet) {
    constexpr Case kCases[] = {
        {"let a = 1;", "1:1 not-es5 scripts have no let; write var"},
        {"for (const k in {}) { let\n[x] = 1; }",
         "1:6 not-es5 scripts have no const\n1:23 not-es5 scripts have no let\n2:1 not-es5 scripts have no destr"},
        {"var f = a => a, g = (a, b) => { return a + c; }, h = () => ({});",
         "1:11 not-es5 scripts have no arrow\n1:28 not-es5\n1:44 undeclared-name nothing declares c\n1:57 not-es5"},
        {"var t = `a${ `b` }c`, u = t?.a ?? t;",
         "1:9 not-es5 scripts have no template\n1:14 not-es5\n1:28 not-es5 scripts have no ?.\n1:32 not-es5 scripts "
         "have no ??"},
        {"function f(a = 1, ...b) {} f(...[1], 2,);",
         "1:14 not-es5 scripts have no default\n1:19 not-es5 scripts have no rest\n"
         "1:30 not-es5 scripts have no spread\n1:39 not-es5 scripts allow no comma"},
        {"var [a, { b, c: [d] }] = [a, b, d]; [a, b] = [b, a]; (function ({ e }) { e; });",
         "1:5 not-es5 scripts have no destr\n1:37 not-es5 scripts have no destr\n1:65 not-es5 scripts have no destr"},
        {"class A { static m(x) { return x; } get v() { return super.v; } }\nnew A();",
         "1:1 not-es5 scripts have no classes\n1:54 not-es5 scripts have no super"},
        {"for (var x of []) x; try { } catch { } a ||= 1; var a;",
         "1:12 not-es5 scripts have no for...of\n1:30 not-es5 scripts have no catch without\n1:42 not-es5 scripts have "
         "no logical"},
        {"async function f() { await 1; } function* g() { yield 1; } var h = async (x) => x, i = async y => y;",
         "1:1 not-es5 scripts have no async\n1:22 not-es5 scripts have no await\n1:41 not-es5 scripts have no "
         "generators\n"
         "1:68 not-es5 scripts have no async\n1:78 not-es5\n1:88 not-es5 scripts have no async\n1:96 not-es5"},
        {"1_000; 10n; /a/u; /(?<n>a)[(?<]/; ({ get [1]() {} });",
         "1:2 not-es5 scripts have no under\n1:10 not-es5 scripts have no BigInt\n1:16 not-es5 regular\n"
         "1:20 not-es5 regular\n1:38 not-es5 scripts have no getters"},
        {"let a;\nimport x from 'y'; unknown;", "1:1 not-es5 scripts have no let\n2:1 not-es5 scripts have no modules"},
        {"import Q; import Q;", "1:11 not-es5 scripts have no modules"},
        // The engine reports what is wrong here.
        {"unknown; var = 3;", ""},
        {"unknown; 'open", ""},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, CountsLinesAndColumnsInTheAuthorsText) {
    const std::string zero = std::string("a;") + '\0' + "b;";
    EXPECT_TRUE(FindingsIn(zero).starts_with("1:1 ")) << FindingsIn(zero);
    EXPECT_EQ(CheckScriptText("fx.js", zero).size(), 3u);
    constexpr Case kCases[] = {
        {"\xEF\xBB\xBFx;", "1:1 undeclared-name nothing declares x"},
        {"\t\t\"\xC3\xA9\xF0\x9F\x98\x80\"; x", "1:9 undeclared-name nothing declares x"},
        {"/* a\r\n b */ x\r\n\r\n  y",
         "2:7 undeclared-name nothing declares x\n4:3 undeclared-name nothing declares y"},
        {"import Q; Q.L.getTime() + Q.L.nothing;\nx; Q.L.release();",
         "1:27 undeclared-name nothing declares QL_nothing\n2:1 undeclared-name nothing declares x\n2:4 "
         "wrong-argument-count"},
        {"\xC3\xA9t\xC3\xA9 + 1;", "1:1 undeclared-name nothing declares \xC3\xA9t\xC3\xA9"},
    };
    ExpectFindings(kCases);
}

TEST(CheckScriptTest, StaysQuickAndWholeOnHostileTexts) {
    const auto repeated = [](std::string_view text, int count) {
        std::string all;
        for (int i = 0; i < count; ++i) all += text;
        return all;
    };
    constexpr int kMany = 100'000;
    // Too deep to be read: nothing is said.
    for (const char* const opening :
         {"(", "[", "{", "!", "a=", "a?", "function f(){", "{a:", "new ", "`${", "a**", "if(1)", "x=>", "(a,"})
        EXPECT_EQ(FindingsIn("x = 1; unknown; " + repeated(opening, kMany)).find("undeclared"), std::string::npos)
            << opening;
    // Long and flat: all is read. Two findings are about setup() and draw().
    EXPECT_EQ(CheckScriptText("fx.js", "a" + repeated("+a", kMany)).size(), std::size_t{kMany} + 3);
    EXPECT_EQ(CheckScriptText("fx.js", "1" + repeated("+console", kMany)).size(), std::size_t{kMany} + 2);
    EXPECT_EQ(FindingsIn("var a; if(a);" + repeated("else if(a);", kMany)), "");
    EXPECT_EQ(FindingsIn("var a = { b: a }; a" + repeated(".b()[0]", kMany)), "");
}

TEST(CheckScriptTest, SaysWhereEachFunctionIs) {
    const auto functions = FunctionsOfScript(
        "function setup() {\n}\nvar draw = function () {\n  [1].map(function () {\n  });\n};\nQ.L.x = { m: function () "
        "{} };");
    std::string lines;
    for (const ScriptFunction& function : functions)
        lines +=
            function.name + " " + std::to_string(function.firstLine) + "-" + std::to_string(function.lastLine) + "\n";
    EXPECT_EQ(lines, "setup 1-2\ndraw 3-6\n 4-5\nm 7-7\n");
}

}  // namespace quillon::cli
