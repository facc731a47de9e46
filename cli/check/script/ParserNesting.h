#pragma once

#include "cli/check/script/ScriptParser.h"

namespace quillon::cli {

class ScriptParser::Nesting {
public:
    explicit Nesting(ScriptParser& parser) : level(parser.depth) {
        if (++level > kDeepest) {
            --level;
            throw GiveUp();
        }
    }
    ~Nesting() { --level; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    // A level takes less than half a KiB of stack, up to ten times that with sanitizers. A pair of parentheses is two.
    static constexpr int kDeepest = 1000;
    int& level;
};

}  // namespace quillon::cli
