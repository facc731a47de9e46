#pragma once

#include <string>

#include "cli/diagnostics/Diagnostic.h"

namespace quillon::cli {

// What the scenes of a check find, each thing once: a fault that comes up at three depths, or in two hosts, counts as
// found where it came up first.
class FindingList {
public:
    // Findings by rules of a higher level are dropped.
    explicit FindingList(int askedLevel) : level(askedLevel) {}

    // `situation` goes into the texts, in parentheses; empty for none.
    void add(const Diagnostics& found, const std::string& situation);
    bool hasErrors() const;

    // All findings except those that only follow from another one.
    Diagnostics take();

private:
    int level;
    Diagnostics findings;
    Diagnostics seen;  // as they came
};

// By path, line and column; what concerns the whole effect comes last.
Diagnostics InOrder(Diagnostics findings);

}  // namespace quillon::cli
