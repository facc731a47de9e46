#include "cli/docs/DocTopics.h"

#include <algorithm>
#include <iterator>
#include <span>
#include <utility>

#include "cli/system/CarriedFile.h"

namespace quillon::cli {

std::span<const CarriedFile> DocPages();

namespace {

using Blocks = std::vector<DocBlock>;

constexpr const char* kScriptPage = "script-api";
constexpr const char* kToolPage = "tool";
constexpr std::string_view kPrefix = "QL_";

// What no heading names, and the heading that is about it.
constexpr std::pair<const char*, const char*> kElsewhere[] = {
    {"setup", "Entry points"},         {"draw", "Entry points"},    {"preRender", "Entry points"},
    {"updateUIFlags", "Entry points"}, {"QL_Type", "QL_initParam"}, {"QL_ParamFlags", "QL_setParamFlags"},
    {"QL_GL", "QL_setTextureParam"},   {"console.log", "Notes"},
};

std::string Lowered(std::string_view text) {
    std::string lowered(text);
    std::ranges::transform(lowered, lowered.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c; });
    return lowered;
}

std::string NameOf(const CarriedFile& page) {
    return std::string(page.name.substr(0, page.name.rfind('.')));
}

Blocks PageOf(std::string_view name) {
    for (const CarriedFile& page : DocPages())
        if (NameOf(page) == name) return ReadMarkdown(page.content);
    return {};
}

bool IsHeading(const DocBlock& block) {
    return block.kind == DocBlock::Kind::heading;
}

// The names of functions in a heading, without their arguments.
std::vector<std::string> FunctionsIn(const DocBlock& heading) {
    std::vector<std::string> names;
    const std::string text = PlainText(heading.text);
    for (std::size_t at = 0; (at = text.find(kPrefix, at)) != std::string::npos; ++at)
        names.push_back(text.substr(at, text.find('(', at) - at));
    return names;
}

// "render" of "quillon render EFFECT ...", empty for another heading.
std::string CommandIn(const DocBlock& heading) {
    constexpr std::string_view kProgram = "quillon ";
    const std::string text = PlainText(heading.text);
    if (!text.starts_with(kProgram)) return "";
    return text.substr(kProgram.size(), text.find(' ', kProgram.size()) - kProgram.size());
}

// A heading and all that is below it.
Blocks SectionAt(const Blocks& page, std::size_t start) {
    std::size_t end = start + 1;
    while (end < page.size() && !(IsHeading(page[end]) && page[end].level <= page[start].level)) ++end;
    return {page.begin() + static_cast<std::ptrdiff_t>(start), page.begin() + static_cast<std::ptrdiff_t>(end)};
}

template <class Test>
std::optional<Blocks> FindSection(std::string_view pageName, const Test& isIt) {
    const Blocks page = PageOf(pageName);
    for (std::size_t i = 0; i < page.size(); ++i)
        if (IsHeading(page[i]) && isIt(page[i])) return SectionAt(page, i);
    return {};
}

}  // namespace

std::vector<DocTopic> DocTopics() {
    std::vector<DocTopic> topics;
    for (const CarriedFile& page : DocPages())
        topics.push_back(
            {NameOf(page), PlainText(ReadMarkdown(page.content.substr(0, page.content.find('\n'))).front().text)});
    std::ranges::sort(topics, {}, &DocTopic::name);
    return topics;
}

std::optional<Blocks> FindDoc(const std::string& topic) {
    std::string wanted = Lowered(topic);
    if (wanted.starts_with("q.l.")) wanted = Lowered(kPrefix) + wanted.substr(4);
    if (Blocks page = PageOf(wanted); !page.empty()) return page;
    if (const auto found = FindSection(kToolPage, [&](const DocBlock& h) { return CommandIn(h) == wanted; }))
        return found;

    wanted = wanted.substr(0, wanted.find_first_of('('));
    for (const auto& [name, heading] : kElsewhere)
        if (wanted == Lowered(name) || wanted.starts_with(Lowered(name) + ".")) wanted = Lowered(heading);
    const auto isFunction = [&](const DocBlock& heading) {
        return std::ranges::any_of(FunctionsIn(heading),
                                   [&](const std::string& name) { return Lowered(name) == wanted; });
    };
    if (const auto found = FindSection(kScriptPage, isFunction)) return found;
    for (const DocTopic& page : DocTopics()) {
        if (const auto found =
                FindSection(page.name, [&](const DocBlock& h) { return Lowered(PlainText(h.text)) == wanted; }))
            return found;
    }
    return {};
}

std::vector<std::string> DocNames() {
    std::vector<std::string> names;
    for (const DocTopic& topic : DocTopics()) names.push_back(topic.name);
    for (const auto& [name, heading] : kElsewhere) names.emplace_back(name);
    for (const DocBlock& block : PageOf(kScriptPage))
        if (IsHeading(block)) std::ranges::copy(FunctionsIn(block), std::back_inserter(names));
    for (const DocBlock& block : PageOf(kToolPage))
        if (IsHeading(block) && !CommandIn(block).empty()) names.push_back(CommandIn(block));
    return names;
}

}  // namespace quillon::cli
