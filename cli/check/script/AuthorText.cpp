#include "cli/check/script/AuthorText.h"

#include <algorithm>
#include <utility>

#include "script/SourcePreparation.h"

namespace quillon::cli {

AuthorText::AuthorText(std::string_view wholeText) : author(wholeText.substr(0, wholeText.find('\0'))) {
    std::vector<std::pair<std::size_t, const Shorthand*>> uses;
    for (const Shorthand& shorthand : kShorthands) {
        for (std::size_t at = author.find(shorthand.written); at != std::string_view::npos;
             at = author.find(shorthand.written, at + shorthand.written.size())) {
            uses.emplace_back(at, &shorthand);
            if (shorthand.isOnce) break;
        }
    }
    std::ranges::sort(uses);
    std::size_t copied = 0;
    for (const auto& [at, shorthand] : uses) {
        text.append(author, copied, at - copied).append(shorthand->meaning);
        copied = at + shorthand->written.size();
        shifts.push_back({text.size(), copied});
    }
    text.append(author, copied);
}

std::vector<AuthorPlace> AuthorText::authorPlaces(const std::vector<std::size_t>& places) const {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    std::vector<AuthorPlace> found;
    AuthorPlace at = {1, 1};
    std::size_t read = author.starts_with(kMark) ? kMark.size() : 0;
    std::size_t shift = 0;
    for (const std::size_t place : places) {
        while (shift + 1 < shifts.size() && shifts[shift + 1].prepared <= place) ++shift;
        const std::size_t target = std::min(shifts[shift].author + (place - shifts[shift].prepared), author.size());
        for (; read < target; ++read) {
            if (author[read] == '\n') {
                at = {at.line + 1, 1};
            } else if ((author[read] & 0xC0) != 0x80) {
                ++at.column;
            }
        }
        found.push_back(at);
    }
    return found;
}

}  // namespace quillon::cli
