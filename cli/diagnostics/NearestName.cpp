#include "cli/diagnostics/NearestName.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "cli/diagnostics/TextScanner.h"

namespace quillon::cli {

namespace {

// Letters to add, remove, replace or exchange with their neighbor to make one text of the other. Each row of the usual
// table holds the edits from a beginning of `from` to every beginning of `to`.
std::size_t EditsBetween(std::string_view from, std::string_view to) {
    std::vector<std::size_t> older, old, row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= from.size(); ++i) {
        older.swap(old);
        old = row;
        row[0] = i;
        for (std::size_t j = 1; j <= to.size(); ++j) {
            row[j] = std::min({old[j] + 1, row[j - 1] + 1, old[j - 1] + (from[i - 1] != to[j - 1])});
            const bool isExchanged = i > 1 && j > 1 && from[i - 1] == to[j - 2] && from[i - 2] == to[j - 1];
            if (isExchanged) row[j] = std::min(row[j], older[j - 2] + 1);
        }
    }
    return row.back();
}

}  // namespace

std::string NearestName(std::string_view name, std::span<const std::string> known) {
    const std::string wanted = InLowerCase(std::string(name));
    std::string nearest;
    std::size_t least = name.size() / 3 + 1;
    for (const std::string& candidate : known) {
        const std::size_t longer = std::max(candidate.size(), name.size());
        if (longer - std::min(candidate.size(), name.size()) >= least) continue;
        const std::size_t edits = EditsBetween(wanted, InLowerCase(candidate));
        if (edits < least) least = edits, nearest = candidate;
    }
    return nearest;
}

std::string DidYouMean(std::string_view name, std::span<const std::string> known) {
    const std::string nearest = NearestName(name, known);
    return nearest.empty() ? "" : "did you mean " + nearest + "?";
}

}  // namespace quillon::cli
