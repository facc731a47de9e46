#pragma once

#include <string>

#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// What the scenes of a check find, each thing once: a fault that comes up at three depths, or in two hosts, counts as
// found where it came up first.
class FindingList {
public:
    // Of what has a rule of a higher level nothing is kept.
    explicit FindingList(int askedLevel) : level(askedLevel) {}

    // `situation` goes into the texts, in parentheses; empty for none.
    void add(const Diagnostics& found, const std::string& situation);
    bool hasErrors() const;

    // All of it, without what only follows from another finding.
    Diagnostics take();

private:
    int level;
    Diagnostics findings;
    Diagnostics seen;  // as they came
};

// By path, line and column; what concerns the whole effect comes last.
Diagnostics InOrder(Diagnostics findings);

}  // namespace quillon::cli
