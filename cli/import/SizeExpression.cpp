#include "cli/import/SizeExpression.h"

#include <fmt/format.h>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/SourceText.h"

namespace quillon::cli {

namespace {

// A size is what its file's author could ask for; deeper nesting is no size.
constexpr int kDeepestLevel = 64;

struct Function {
    const char* name;
    const char* script;
    int arguments;  // 0: any number from one on
};
constexpr Function kFunctions[] = {{"floor", "Math.floor", 1}, {"ceil", "Math.ceil", 1}, {"round", "Math.round", 1},
                                   {"abs", "Math.abs", 1},     {"sqrt", "Math.sqrt", 1}, {"pow", "Math.pow", 2},
                                   {"min", "Math.min", 0},     {"max", "Math.max", 0}};

class Reader {
public:
    Reader(std::string_view text, const SizeNames& sizeNames) : tokens(ReadTokens(text, 1)), names(sizeNames) {}

    SizeExpression read() {
        std::string script = sum(0);
        if (fault.empty() && !next().empty()) fail(fmt::format("\"{}\" is not expected there", next()));
        return fault.empty() ? SizeExpression{script, {}} : SizeExpression{{}, fault};
    }

private:
    std::string next() {
        at = NextSignificant(tokens, at);
        return at < tokens.size() ? tokens[at].source : "";
    }

    bool take(std::string_view mark) {
        if (next() != mark) return false;
        ++at;
        return true;
    }

    std::string fail(const std::string& words) {
        if (fault.empty()) fault = words;
        return "";
    }

    std::string sum(int level) {
        std::string script = product(level);
        while (fault.empty()) {
            const std::string mark = next();
            if (mark != "+" && mark != "-") break;
            ++at;
            script += fmt::format(" {} {}", mark, product(level));
        }
        return script;
    }

    std::string product(int level) {
        std::string script = factor(level);
        while (fault.empty()) {
            const std::string mark = next();
            if (mark != "*" && mark != "/") break;
            ++at;
            script += fmt::format(" {} {}", mark, factor(level));
        }
        return script;
    }

    std::string factor(int level) {
        if (level > kDeepestLevel) return fail("it is nested too deep");
        if (take("-")) return "-" + Group(factor(level + 1));
        if (take("(")) return brackets("", 1, level);
        if (take("$")) return name();
        const std::string word = next();
        if (word.empty()) return fail("something is missing at its end");
        const GlslToken token = tokens[at++];
        if (token.kind == GlslToken::Kind::number) return number(token.source);
        for (const Function& function : kFunctions) {
            if (word == function.name && take("(")) return brackets(function.script, function.arguments, level);
        }
        return fail(
            fmt::format("\"{}\" is unknown here; known are numbers, $WIDTH, $HEIGHT, $NAME of an input, floor, "
                        "ceil, round, abs, sqrt, pow, min and max",
                        word));
    }

    // A minus sign before a negative number would read as a decrement.
    static std::string Group(const std::string& script) {
        return script.starts_with('-') ? "(" + script + ")" : script;
    }

    std::string number(const std::string& text) {
        try {
            std::size_t length = 0;
            const double value = std::stod(text, &length);
            if (length == text.size() || text.substr(length) == "f") return NumberText(value);
        } catch (const std::exception&) {  // out of range: the same words
        }
        return fail(fmt::format("\"{}\" is no number", text));
    }

    std::string name() {
        const std::string word = next();
        if (at < tokens.size() && tokens[at].kind == GlslToken::Kind::word) {
            ++at;
            if (const std::optional<std::string> script = names(word)) return *script;
        }
        return fail(fmt::format("${} is no input of the file that is a number", word));
    }

    std::string brackets(const std::string& function, int wanted, int level) {
        std::string script = function + "(" + sum(level + 1);
        int count = 1;
        while (fault.empty() && take(",")) {
            script += ", " + sum(level + 1);
            ++count;
        }
        if (fault.empty() && !take(")")) fail("a closing bracket is missing");
        if (fault.empty() && wanted != 0 && count != wanted) fail(fmt::format("{} values in brackets", count));
        return script + ")";
    }

    GlslTokens tokens;
    const SizeNames& names;
    std::size_t at = 0;
    std::string fault;
};

}  // namespace

SizeExpression ReadSizeExpression(std::string_view text, const SizeNames& names) {
    return Reader(text, names).read();
}

}  // namespace quillon::cli
