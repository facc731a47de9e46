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
    // A level takes about 1 KiB of stack, several times that with sanitizers.
    static constexpr int kDeepest = 300;
    int& level;
};

}  // namespace quillon::cli
