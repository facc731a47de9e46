#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "script/Scripting.h"
#include "script/TimeLimit.h"

namespace quillon::test {
namespace {

std::optional<ScriptError> lastError;

// The heap of a program whose scripts end, with a limit that no other script of these tests comes near.
class TimeLimitTest : public ::testing::Test {
protected:
    void SetUp() override {
        TimeLimit::Set(std::chrono::milliseconds(100));
        Scripting::SetErrorObserver([](const ScriptError& error) { lastError = error; });
        scripting.Open();
    }
    void TearDown() override {
        scripting.Close();
        Scripting::SetErrorObserver(nullptr);
        TimeLimit::Set({});
    }
    std::optional<ScriptError> errorOf(const char* text) {
        lastError.reset();
        scripting.Eval(text);
        return lastError;
    }
    Scripting& scripting = Scripting::instance();
};

// Duktape counts the start of a loop to the line before it, and that may be what runs when the time is over.
TEST_F(TimeLimitTest, EndsWhateverNeverReturnsAndSaysTheLineThatRan) {
    const struct {
        const char* text;
        int line;
    } kCases[] = {
        {"\n\nfor (;;);", 3},
        {"function f() {\nfor (;;);\n}\nf();", 2},
        {"for (;;) {\ntry {\nfor (;;);\n} catch (e) {}\n}", 3},
        {"for (;;) try { try {\nfor (;;);\n} finally { for (;;); } } catch (e) { continue; }", 2},
        {"Object.defineProperty({}, 'x', {get: function () {\nfor (;;);\n}}).x", 2},
        {"QL_release({valueOf: function () {\nfor (;;);\n}});", 2},
        {"[1, 2].sort(function () {\nfor (;;);\n});", 2},
        {"JSON.stringify({toJSON: function () {\nfor (;;);\n}});", 2},
        {"Duktape.fin({}, function () {\nfor (;;);\n});", 2},
        {"(function f() {\ntry { f(); } catch (e) {} f(); })();", 2},
    };
    for (const auto& [text, line] : kCases) {
        const std::optional<ScriptError> error = errorOf(text);
        ASSERT_TRUE(error) << text;
        EXPECT_TRUE(error->isTimeout) << text << ": " << error->message;
        EXPECT_TRUE(error->line == line || error->line == line - 1) << error->line << " in " << text;
        EXPECT_EQ(error->evaluated, text);
        EXPECT_FALSE(errorOf("var after = 1; for (var i = 0; i < 1e4; ++i) after += i;")) << "after " << text;
    }
}

TEST_F(TimeLimitTest, EndsAFinalizerThatRunsWithTheHeapsEnd) {
    EXPECT_FALSE(errorOf("var kept = {}; Duktape.fin(kept, function () { for (;;); });"));
    scripting.Close();
    scripting.Open();
    EXPECT_FALSE(errorOf("1"));
}

}  // namespace
}  // namespace quillon::test
