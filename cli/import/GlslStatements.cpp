#include <fmt/format.h>

#include "cli/import/GlslWalk.h"

namespace quillon::cli {

void GlslWalk::block() {
    expect("{");
    scopes.emplace_back();
    const std::size_t level = scopes.size();
    const std::size_t loops = breakable.size();
    while (at < places.size() && peek() != "}") {
        const std::size_t start = at;
        try {
            statement();
        } catch (const Stop&) {
            scopes.resize(level);
            breakable.resize(loops);
            recover();
        }
        if (at == start && peek() != "}") ++at;
    }
    scopes.pop_back();
    expect("}");
}

void GlslWalk::statement() {
    const Level level(depth);
    if (peek() == "{") return block();
    if (take(";")) return;
    if (take("if")) {
        expect("(");
        expression();
        expect(")");
        statement();
        if (take("else")) statement();
        return;
    }
    if (peek() == "for" || peek() == "while" || peek() == "do") return loop();
    if (peek() == "switch") return switchStatement();
    if (take("return")) {
        if (take(";")) return;
        Node value = expression();
        convert(value, result);
        return expect(";");
    }
    if (peek() == "break" && !breakable.empty() && !breakable.back())
        findings.refuse(lineHere(),
                        "a break inside of a switch that is not the last word of its case; write if and else");
    if (take("break") || take("continue") || take("discard")) return expect(";");
    if (peek() == "struct") return structure();
    if (isDeclaration()) {
        const std::size_t constPlace = qualifiers();
        GlslType type;
        std::string arrayTail;
        if (!takeType(type, arrayTail)) throw Stop();
        return declarators(type, constPlace, /*isGlobal=*/false, arrayTail);
    }
    expression();
    expect(";");
}

void GlslWalk::loop() {
    scopes.emplace_back();
    breakable.push_back(true);
    const std::string word = peek();
    ++at;
    if (word == "do") {
        statement();
        expect("while");
    }
    expect("(");
    if (word == "for") {
        if (isDeclaration())
            statement();
        else if (!take(";")) {
            expression();
            expect(";");
        }
        if (!take(";")) {
            expression();
            expect(";");
        }
        if (peek() != ")") expression();
    } else {
        expression();
    }
    expect(")");
    if (word == "do")
        expect(";");
    else
        statement();
    breakable.pop_back();
    scopes.pop_back();
}

// switch (e) { case 1: case 2: a; break; default: b; } becomes
// { int choice1 = e; if (choice1 == 1 || choice1 == 2) { a; } else { b; } }
void GlslWalk::switchStatement() {
    const std::string choice = fmt::format("choice{}", ++switchCount);
    token(at).text = fmt::format("{{ int {} = ", choice);
    ++at;
    expect("(");
    expression();
    expect(")");
    token(at - 1).text += ";";
    if (peek() != "{") throw Stop();
    token(at).text.clear();
    ++at;
    scopes.emplace_back();
    breakable.push_back(false);
    bool isFirst = true;
    bool hasDefault = false;
    while (at < places.size() && peek() != "}") {
        if (hasDefault) findings.refuse(lineHere(), "a switch whose default is not its last case; move it to the end");
        if (!switchLabels(choice, isFirst, hasDefault)) throw Stop();
        if (!switchBody()) {
            findings.refuse(lineHere(), "a case that runs on into the next one; end it with break");
            break;
        }
    }
    breakable.pop_back();
    scopes.pop_back();
    expect("}");
}

// The labels of one case become the condition of an if.
bool GlslWalk::switchLabels(const std::string& choice, bool& isFirst, bool& hasDefault) {
    std::string condition;
    std::size_t last = places.size();
    while (peek() == "case" || peek() == "default") {
        const std::size_t start = at;
        const bool isDefault = take("default");
        if (!isDefault) {
            ++at;
            const Node value = conditional();
            condition += (condition.empty() ? "" : " || ") + fmt::format("{} == {}", choice, textOf(value));
        }
        hasDefault = hasDefault || isDefault;
        if (peek() != ":") return false;
        clear(start, at);
        last = at;
        ++at;
    }
    if (last == places.size()) return false;
    const std::string header =
        hasDefault ? isFirst ? "{" : "else {" : (isFirst ? "if (" : "else if (") + condition + ") {";
    token(last).text = header;
    isFirst = false;
    return true;
}

// The first word of the last statement of the block at hand. A break there goes: it would end the case.
std::string GlslWalk::lastWordOfBlock() {
    int level = 0;
    std::size_t end = at;
    for (; end < places.size(); ++end) {
        if (token(end).source == "{") ++level;
        if (token(end).source == "}" && --level == 0) break;
    }
    if (end >= places.size() || end < at + 2 || token(end - 1).source != ";") return "";
    std::size_t start = end - 1;
    while (token(start - 1).source != ";" && token(start - 1).source != "{" && token(start - 1).source != "}") --start;
    const std::string word = token(start).source;
    if (word == "break") {
        clear(start, end - 1);
        token(start).source = ";";
    }
    return word;
}

// The statements of one case; its last break goes. False where they run on into the next case.
bool GlslWalk::switchBody() {
    bool isEnded = false;
    while (at < places.size() && peek() != "}" && peek() != "case" && peek() != "default") {
        const std::string word = peek();
        if (word == "break" && peek(1) == ";") {
            clear(at, at + 1);
            at += 2;
            token(at - 1).text = "}";
            return peek() == "}" || peek() == "case" || peek() == "default";
        }
        const std::string last = word == "{" ? lastWordOfBlock() : word;
        statement();
        isEnded = last == "return" || last == "discard" || last == "continue" || last == "break";
    }
    token(at - 1).text += " }";
    return isEnded || peek() == "}";
}

}  // namespace quillon::cli
