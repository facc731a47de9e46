#include <duktape.h>
#include <gmock/gmock.h>
#include <pthread.h>

#include "entities/Context.h"
#include "script/Scripting.h"
#include "script/TimeLimit.h"
#include "support/EngineTest.h"

namespace quillon::test {
namespace {

std::vector<ScriptError> seenErrors;
void KeepError(const ScriptError& error) {
    seenErrors.push_back(error);
}

// Only the heap: no engine, no effect, no GL.
class ScriptHeap : public ::testing::Test {
protected:
    void SetUp() override { scripting.Open(); }
    void TearDown() override {
        Scripting::SetErrorObserver(nullptr);
        scripting.Close();
    }
    int number(const char* expression) {
        duk_context* ctx = scripting.Context();
        duk_eval_string(ctx, expression);
        const int value = duk_to_int(ctx, -1);
        duk_pop(ctx);
        return value;
    }
    Scripting& scripting = Scripting::instance();
};

TEST_F(ScriptHeap, StaysEmptyAndUsableWhateverATextDoes) {
    for (const char* text : {"1 + 1", "throw new Error('x')", "throw null", "no_such_name()", "syntax error here",
                             "(function f() { f(); })()", "", "throw {toString: function () { throw 1; }}", "\xFF",
                             "var a = 1; throw a; a = 2"}) {
        scripting.Eval(text);
        EXPECT_EQ(duk_get_top(scripting.Context()), 0) << text;
    }
    EXPECT_EQ(number("a"), 1) << "what a text did before its error remains";
    scripting.Eval(nullptr);
    scripting.Eval("b = 7");
    EXPECT_EQ(number("b"), 7);
}

TEST_F(ScriptHeap, CollectsAllGarbageAfterEachText) {
    scripting.Eval(
        "var ended = 0; function leave() { var o = {}; o.self = o; Duktape.fin(o, function () { ++ended; });}");
    for (int texts = 1; texts <= 3; ++texts) {
        scripting.Eval(texts == 2 ? "leave(); throw 'unread'" : "leave();");
        EXPECT_EQ(number("ended"), texts);
    }
}

TEST_F(ScriptHeap, DoesNothingOnceClosedAndStartsAnewWhenOpened) {
    scripting.Eval("var kept = 1; QL_initParam('n', 1);");
    EXPECT_EQ(Context::Instance().Count(), 1u);
    scripting.Close();
    EXPECT_EQ(scripting.Context(), nullptr);
    EXPECT_EQ(Context::Instance().Count(), 0u);
    scripting.Eval("QL_initParam('n', 1);");
    scripting.Close();
    EXPECT_EQ(Context::Instance().Count(), 0u);
    scripting.Open();
    scripting.Eval("var id = QL_initParam('n', 1);");
    EXPECT_EQ(number("typeof kept === 'undefined' ? id : 0"), 0x1000001);
}

// These tests have the heap that a module has.
TEST_F(ScriptHeap, RunsAsLongAsAScriptLikes) {
    TimeLimit::Set(std::chrono::milliseconds(1));
    scripting.Eval("for (var steps = 0; steps < 3000000; ++steps);");
    TimeLimit::Set({});
    EXPECT_EQ(number("steps"), 3000000);
}

TEST_F(ScriptHeap, ReportsErrorsOnlyToAnObserver) {
    scripting.Eval("throw new Error('unseen')");
    seenErrors.clear();
    Scripting::SetErrorObserver(KeepError);
    scripting.Eval("1 + 1");
    EXPECT_TRUE(seenErrors.empty());
    scripting.Eval("throw 1");
    ASSERT_EQ(seenErrors.size(), 1u);
    EXPECT_EQ(seenErrors[0].evaluated, "throw 1");
    Scripting::SetErrorObserver(nullptr);
    scripting.Eval("throw 2");
    EXPECT_EQ(seenErrors.size(), 1u);
    EXPECT_EQ(duk_get_top(scripting.Context()), 0);
}

// What is thrown is described without a call of the script's functions: each `forever` would never return.
TEST_F(ScriptHeap, ReadsAnErrorWithoutRunningTheScript) {
    const std::string kNoText = "a value was thrown that has no text";
    const struct {
        const char* text;
        std::string message;
        int line;
    } kCases[] = {
        {"\n\nnowhere();", "ReferenceError: identifier 'nowhere' undefined", 3},
        {"\nvar = 1;", "SyntaxError: invalid variable declaration (line 2)", 2},
        {"[1].map(function () {\nthrow new TypeError('inside a native'); });", "TypeError: inside a native", 2},
        {"throw 'text'", "text", 0},
        {"throw 1.5", "1.5", 0},
        {"throw {message: 'only this'}", "only this", 0},
        {"throw {}", kNoText, 0},
        {"throw Symbol('s')", kNoText, 0},
        {"throw {toString: forever}", kNoText, 0},
        {"throw new Proxy(new Error('e'), {get: forever})", kNoText, 0},
        {"e = new Error('e'); Object.defineProperty(e, 'message', {get: forever}); throw e", "Error", 1},
        {"e = new Error('e'); Object.defineProperty(e, 'lineNumber', {get: forever}); throw e", "Error: e", 1},
        {"e = new Error('e'); e.name = {toString: forever}; throw e", "e", 1},
        {"e = Object.create(new Proxy({}, {get: forever})); throw e", kNoText, 0},
        {"f = function () { throw new Error('e'); }; Object.defineProperty(f, 'name', {get: forever}); f()", "Error: e",
         0},
        {"Object.defineProperty(Error.prototype, 'lineNumber', {get: forever}); throw new Error('e')", "Error: e", 1},
        {"Duktape.errCreate = forever; throw Object.create(null, {message: {get: forever}})", kNoText, 0},
    };
    scripting.Eval("var e, f; function forever() { for (;;); }");
    Scripting::SetErrorObserver(KeepError);
    for (const auto& [text, message, line] : kCases) {
        seenErrors.clear();
        scripting.Eval(text);
        ASSERT_EQ(seenErrors.size(), 1u) << text;
        EXPECT_EQ(seenErrors[0].message, message) << text;
        EXPECT_EQ(seenErrors[0].line, line) << text;
        EXPECT_EQ(duk_get_top(scripting.Context()), 0) << text;
    }
}

// A finalizer runs in a collection, after an error, at the end of the heap; natives work in it all the same.
TEST_F(ScriptHeap, LetsFinalizersCallNativesUntilTheVeryEnd) {
    scripting.Eval(
        "function guard(id) { var o = {}; Duktape.fin(o, function () { QL_release(id); QL_initParam('late', 1);"
        " QL_initSurface(1, 1, 8); }); return o; }"
        "var alive = guard(QL_initParam('a', 1)); guard(QL_initSurface(2, 2, 8)); throw "
        "guard(QL_initTexture('none'));");
    EXPECT_EQ(Context::Instance().Count(), 3u) << "one that lives, and one of each finalizer that ran";
    scripting.Close();
    EXPECT_EQ(Context::Instance().Count(), 0u);
}

// The host calls on its own threads, whose stacks can be small.
TEST_F(ScriptHeap, SurvivesDeepRecursionOnASmallStack) {
    const auto work = [](void* self) -> void* {
        Scripting& heap = *static_cast<Scripting*>(self);
        heap.Eval("var depth = 0; function dive() { ++depth; return [1].map(dive); } dive();");
        heap.Eval("function climb() { return {valueOf: climb} + 1; } climb();");
        heap.Eval("var nested = Array(20000).join('(') + '1' + Array(20000).join(')'); eval(nested);");
        // A compilation that starts where most of the stack is used already.
        heap.Eval(
            "function sink() { try { [1].map(sink); } catch (x) { try { eval(nested); } catch (y) {} throw x; } }"
            "sink();");
        for (const char* opening : {"[", "{", "!", "if(1)", "x=", "a?b:", "f(", "while(1)", "a[", "new ", "1+("})
            heap.Eval(("eval(Array(20000).join('" + std::string(opening) + "'));").c_str());
        heap.Eval("eval(Array(20000).join('(function(){'));");
        heap.Eval("JSON.parse(Array(200000).join('['));");
        heap.Eval("new RegExp(Array(20000).join('(') + Array(20000).join(')')).exec('');");
        heap.Eval("function sort() { return [2, 1].sort(sort)[0]; } sort();");
        heap.Eval("var f = {valueOf: function () { return QL_setOutputExtent(f, 1); }}; QL_setOutputExtent(f, 1);");
        heap.Eval("var p = {}; for (var i = 0; i < 5; ++i) p = new Proxy(p, {get: function () { return p.x; }}); p.x;");
        heap.Eval("var alive = 'yes';");
        return nullptr;
    };
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, 1024 * 1024), 0);
    pthread_t thread;
    ASSERT_EQ(pthread_create(&thread, &attributes, work, &scripting), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
    EXPECT_EQ(number("alive === 'yes' && depth > 5 ? 1 : 0"), 1);
}

}  // namespace
}  // namespace quillon::test
