#include "cli/pictures/FrameRange.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/diagnostics/TextScanner.h"
#include "cli/diagnostics/ToolError.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

// The least number of digits that the pattern at the front of the text asks for.
std::optional<std::size_t> TakePattern(std::string_view& text) {
    const std::size_t hashes = std::min(text.find_first_not_of('#'), text.size());
    if (hashes > 1) {
        text.remove_prefix(hashes);
        return hashes;
    }
    std::string_view rest = text;
    if (!TakeText(rest, "%")) return {};
    const auto digits = TakeNumber(rest);  // a leading zero is what is done anyway
    if (!TakeText(rest, "d") || digits.value_or(1) > 9) return {};
    text = rest;
    return static_cast<std::size_t>(digits.value_or(1));
}

}  // namespace

std::vector<std::int32_t> FrameRange::frames() const {
    std::vector<std::int32_t> numbers;
    for (std::int64_t frame = first; frame <= last; frame += step) numbers.push_back(static_cast<std::int32_t>(frame));
    return numbers;
}

std::optional<FrameRange> ParseFrameRange(const std::string& text) {
    if (text.empty()) return {};
    std::string_view rest = text;
    const auto first = TakeNumber(rest);
    const bool hasLast = TakeText(rest, "-");
    const auto last = TakeNumber(rest);
    const auto step = TakeText(rest, "x") ? TakeNumber(rest) : std::optional(1);
    if (!first || !hasLast || !last || !step || !rest.empty() || *step < 1 || *last < *first) {
        throw WrongCommandLine("--frames " + text, "write it as FIRST-LAST or FIRST-LASTxSTEP, as in 1-100 or 0-48x2");
    }
    return FrameRange{*first, *last, *step};
}

std::optional<FramePattern> FindFramePattern(const std::filesystem::path& path) {
    const std::string whole = path.string();
    const std::size_t nameStart = whole.size() - path.filename().string().size();
    std::optional<FramePattern> found;
    for (std::size_t at = nameStart; at < whole.size();) {
        std::string_view rest = std::string_view(whole).substr(at);
        const auto digits = TakePattern(rest);
        if (!digits) {
            ++at;
            continue;
        }
        if (found) {
            throw WrongCommandLine(whole, "has more than one place for the frame number", "keep one");
        }
        found = {whole.substr(0, at), *digits, std::string(rest)};
        at = whole.size() - rest.size();
    }
    return found;
}

std::filesystem::path PathOfFrame(const std::filesystem::path& path, std::int32_t frame) {
    const std::optional<FramePattern> pattern = FindFramePattern(path);
    if (!pattern) return path;
    return PathFromUtf8(fmt::format("{}{:0{}}{}", pattern->before, frame, pattern->digits, pattern->after));
}

}  // namespace quillon::cli
