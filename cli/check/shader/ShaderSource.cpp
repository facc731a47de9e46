#include "cli/check/shader/ShaderSource.h"

#include <algorithm>
#include <optional>

#include "cli/check/shader/Preprocessor.h"
#include "cli/diagnostics/TextScanner.h"
#include "gpu/FragmentRewriting.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kOrderMark = "\xEF\xBB\xBF";

// The same number of bytes, in which a line feed is the one end of a line, and lines that go on have none.
std::string Flatten(std::string_view text) {
    std::string flat(text);
    for (std::size_t i = 0; i < flat.size(); ++i) {
        const auto at = [&](std::size_t offset) { return i + offset < flat.size() ? flat[i + offset] : '\0'; };
        if (flat[i] == '\\' && (at(1) == '\n' || at(1) == '\r')) {
            const std::size_t length = at(1) == '\r' && at(2) == '\n' ? 3 : 2;
            std::fill_n(flat.begin() + static_cast<std::ptrdiff_t>(i), length, ' ');
        } else if (flat[i] == '\r') {
            flat[i] = at(1) == '\n' ? ' ' : '\n';
        }
    }
    return flat;
}

constexpr bool StartsCharacter(char c) {
    return (c & 0xC0) != 0x80;
}

struct Cut {
    std::vector<SourceToken> tokens{};
    std::size_t openComment = std::string_view::npos;
};

Cut CutText(std::string_view text) {
    Cut cut;
    std::size_t position = 0;
    bool wasDirective = false;
    for (GlslToken& token : ReadTokens(Flatten(text), 1)) {
        const std::size_t length = token.source.size();
        if (token.kind == GlslToken::Kind::comment && token.source.starts_with("/*") &&
            (length < 4 || !token.source.ends_with("*/")))
            cut.openComment = position;
        if (token.isSignificant()) {
            cut.tokens.push_back({.kind = token.kind,
                                  .text = std::move(token.source),
                                  .position = position,
                                  .isDirective = token.isDirective,
                                  .startsDirective = token.isDirective && !wasDirective});
            wasDirective = token.isDirective;
        } else if (token.source == "\n") {
            wasDirective = false;
        }
        position += length;
    }
    return cut;
}

}  // namespace

ShaderSource::ShaderSource(std::string_view given) : text(given.substr(0, given.find('\0'))) {
    hasOrderMark = text.starts_with(kOrderMark);
    lineStarts.push_back(0);
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n')))
            lineStarts.push_back(i + 1);
    }
    RewrittenFragment fragment = RewriteFragment(text);
    rewritten = std::move(fragment.text);
    addedLines = fragment.addedLines;
    std::size_t authorStart = 0;
    for (std::size_t i = 0; i < addedLines; ++i) authorStart = rewritten.find('\n', authorStart) + 1;

    Cut cut = CutText(text);
    openComment = cut.openComment;
    all = std::move(cut.tokens);
    // Renaming turns words into words, so the two texts have the same tokens, one by one.
    std::vector<SourceToken> renamed = CutText(std::string_view(rewritten).substr(authorStart)).tokens;
    for (std::size_t i = 0; i < all.size(); ++i)
        all[i].given = i < renamed.size() ? std::move(renamed[i].text) : all[i].text;
    if (renamed.size() > all.size()) addedTail = rewritten.substr(rewritten.rfind('\n'));
    certain = Preprocess(all);
    for (const SourceToken& token : all)
        if (!token.isDirective && token.presence == SourceToken::Presence::kept) kept.push_back(token);
    findPartners();
    findNamedLines();
}

void ShaderSource::findPartners() {
    partners.assign(kept.size(), kept.size());
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        const std::string& mark = kept[i].text;
        if (mark == "(" || mark == "[" || mark == "{") open.push_back(i);
        if ((mark != ")" && mark != "]" && mark != "}") || open.empty()) continue;
        partners[open.back()] = i;
        open.pop_back();
    }
}

int ShaderSource::lineOf(std::size_t position) const {
    return static_cast<int>(std::ranges::upper_bound(lineStarts, position) - lineStarts.begin());
}

std::size_t ShaderSource::startOf(int line) const {
    return line == 1 && hasOrderMark ? kOrderMark.size() : lineStarts[static_cast<std::size_t>(line) - 1];
}

TextPlace ShaderSource::placeOf(std::size_t position) const {
    const int line = lineOf(position);
    const std::size_t start = std::min(startOf(line), position);
    const std::string_view before = std::string_view(text).substr(start, position - start);
    return {line, 1 + static_cast<int>(std::ranges::count_if(before, StartsCharacter))};
}

std::size_t ShaderSource::positionOf(TextPlace place) const {
    std::size_t position = startOf(place.line);
    for (int column = 1; column < place.column && position < text.size(); ++column) {
        ++position;
        while (position < text.size() && !StartsCharacter(text[position])) ++position;
    }
    return position;
}

std::string_view ShaderSource::wordAt(TextPlace place) const {
    if (place.line < 1) return {};
    const auto found = std::ranges::lower_bound(kept, positionOf(place), {}, &SourceToken::position);
    return found != kept.end() && found->isWord() ? std::string_view(found->text) : std::string_view();
}

std::size_t ShaderSource::statementEnd(std::size_t position) const {
    auto token = std::ranges::lower_bound(kept, position, {}, &SourceToken::position);
    while (token != kept.end() && token->text != ";" && token->text != "{" && token->text != "}") ++token;
    return token != kept.end() ? token->position : text.size();
}

// In GLSL 1.10 the line after "#line 7" is line 8.
void ShaderSource::findNamedLines() {
    for (std::size_t i = 0; i + 2 < all.size(); ++i) {
        if (!all[i].startsDirective || all[i + 1].text != "line" || all[i].presence != SourceToken::Presence::kept)
            continue;
        std::string_view digits = all[i + 2].text;
        if (const std::optional<int> number = TakeNumber(digits); number && digits.empty())
            namedLines.push_back({placeOf(all[i]).line, *number});
    }
}

int ShaderSource::namedLine(int line) const {
    const auto next = std::ranges::lower_bound(namedLines, line, {}, &NamedLine::line);
    if (next == namedLines.begin()) return 0;
    const NamedLine& named = *(next - 1);
    return named.number + line - named.line;
}

const std::string& ShaderSource::codeText(std::size_t index) const {
    static const std::string kNone;
    return index < kept.size() ? kept[index].text : kNone;
}

}  // namespace quillon::cli
