#include "cli/effect/SourceChecks.h"

#include <fmt/format.h>

#include <algorithm>
#include <rapidxml/rapidxml.hpp>

#include "cli/diagnostics/Rules.h"
#include "cli/diagnostics/TextScanner.h"
#include "package/XmlNesting.h"

namespace quillon::cli {

namespace {

// Bytes of the well-formed sequence at the start of the text; 0 when there is none.
std::size_t SequenceLength(std::string_view text) {
    struct Form {
        unsigned char firstLow, firstHigh, secondLow, secondHigh;
        std::size_t length;
    };
    constexpr Form kForms[] = {
        {0x01, 0x7F, 0x00, 0x00, 1}, {0xC2, 0xDF, 0x80, 0xBF, 2}, {0xE0, 0xE0, 0xA0, 0xBF, 3},
        {0xE1, 0xEC, 0x80, 0xBF, 3}, {0xED, 0xED, 0x80, 0x9F, 3}, {0xEE, 0xEF, 0x80, 0xBF, 3},
        {0xF0, 0xF0, 0x90, 0xBF, 4}, {0xF1, 0xF3, 0x80, 0xBF, 4}, {0xF4, 0xF4, 0x80, 0x8F, 4},
    };
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    for (const Form& form : kForms) {
        if (byte(0) < form.firstLow || byte(0) > form.firstHigh) continue;
        if (text.size() < form.length) return 0;
        if (form.length > 1 && (byte(1) < form.secondLow || byte(1) > form.secondHigh)) return 0;
        for (std::size_t i = 2; i < form.length; ++i) {
            if ((byte(i) & 0xC0) != 0x80) return 0;
        }
        return form.length;
    }
    return 0;
}

Diagnostics CheckEncoding(const std::string& path, std::string_view content, const char* rule) {
    for (std::size_t i = 0; i < content.size();) {
        const std::size_t length = SequenceLength(content.substr(i));
        if (length == 0) {
            const unsigned byte = static_cast<unsigned char>(content[i]);
            return {
                Found(rule, path, LineAt(content, i), ColumnAt(content, i),
                      fmt::format("byte 0x{:02X} {}", byte, byte == 0 ? "ends the text here" : "is not UTF-8 text"))};
        }
        i += length;
    }
    return {};
}

// Of a text in Latin letters, which editors for Windows save with or without a mark at its start.
bool LooksLikeUtf16(std::string_view content) {
    return content.starts_with("\xFF\xFE") || content.starts_with("\xFE\xFF") ||
           (content.size() >= 2 && (content[0] == '\0' || content[1] == '\0'));
}

// The engine reads past them, with the first tag's name; other programs do not.
Diagnostics CheckClosingTags(const std::string& path, std::string_view content) {
    std::string text(content);
    rapidxml::xml_document<char> document;
    try {
        document.parse<rapidxml::parse_validate_closing_tags>(text.data());
    } catch (const rapidxml::parse_error& error) {
        // After the name.
        const auto end = std::min(static_cast<std::size_t>(error.where<char>() - text.data()), content.size());
        const std::size_t start = content.rfind('<', end == 0 ? 0 : end - 1);
        if (start == std::string_view::npos) return {};
        const std::string_view tag = content.substr(start, content.find_first_of("> \t\r\n", start) - start);
        return {Found("config/closing-tag", path, LineAt(content, start), ColumnAt(content, start),
                      fmt::format("{}> ends an element of another name", tag))};
    }
    return {};
}

}  // namespace

Diagnostics CheckConfig(const std::string& path, std::string_view content) {
    if (LooksLikeUtf16(content)) return CheckEncoding(path, content, "config/not-utf8");
    std::string text(content.substr(0, content.find('\0')));
    if (XmlNestsDeeperThan(text, kDeepestXmlLevel)) {
        return {Found("config/not-xml", path, 0, 0,
                      fmt::format("elements are nested more than {} deep; effects need one level", kDeepestXmlLevel))};
    }
    rapidxml::xml_document<char> document;
    try {
        document.parse<0>(text.data());
    } catch (const rapidxml::parse_error& error) {
        // Parsing shifts the text in place but leaves what it has not come to where it is.
        // What is missing at the end belongs after the last character that is there.
        const auto position = std::min(static_cast<std::size_t>(error.where<char>() - text.data()),
                                       content.substr(0, text.size()).find_last_not_of(" \t\r\n") + 1);
        return {Found("config/not-xml", path, LineAt(content, position), 0,
                      fmt::format("not XML as effects need it: {}", error.what()))};
    }
    return CheckClosingTags(path, content.substr(0, text.size()));
}

Diagnostics CheckScriptEncoding(const std::string& path, std::string_view content) {
    return CheckEncoding(path, content, "script/not-utf8");
}

}  // namespace quillon::cli
