#include <fmt/format.h>
#include <md4c.h>

#include <algorithm>
#include <utility>

#include "cli/docs/DocBlocks.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kPageEnding = ".md";

// Takes what the parser calls out, block by block.
class PageReader {
public:
    std::vector<DocBlock> blocks;

    void enterBlock(MD_BLOCKTYPE type, void* detail) {
        switch (type) {
            case MD_BLOCK_H:
                open(DocBlock::Kind::heading).level = static_cast<MD_BLOCK_H_DETAIL*>(detail)->level;
                break;
            case MD_BLOCK_P:
                open(DocBlock::Kind::paragraph);
                break;
            case MD_BLOCK_CODE:
                open(DocBlock::Kind::code);
                break;
            case MD_BLOCK_TABLE:
                open(DocBlock::Kind::table);
                break;
            case MD_BLOCK_TR:
                blocks.back().rows.emplace_back();
                break;
            case MD_BLOCK_TH:
            case MD_BLOCK_TD:
                target = &blocks.back().rows.back().emplace_back();
                break;
            case MD_BLOCK_UL:
                enterList(0);
                break;
            case MD_BLOCK_OL:
                enterList(static_cast<MD_BLOCK_OL_DETAIL*>(detail)->start);
                break;
            case MD_BLOCK_LI:
                enterItem();
                break;
            default:
                break;
        }
    }

    void leaveBlock(MD_BLOCKTYPE type) {
        if (type == MD_BLOCK_UL || type == MD_BLOCK_OL) lists.pop_back();
        if (type != MD_BLOCK_TR && type != MD_BLOCK_THEAD && type != MD_BLOCK_TBODY) target = nullptr;
    }

    void enterSpan(MD_SPANTYPE type, void* detail) {
        if (type == MD_SPAN_CODE) styles.push_back(DocSpan::Style::code);
        if (type == MD_SPAN_STRONG || type == MD_SPAN_EM) styles.push_back(DocSpan::Style::strong);
        if (type == MD_SPAN_IMG) add("[picture: ");
        if (type == MD_SPAN_A) {
            const MD_ATTRIBUTE& link = static_cast<MD_SPAN_A_DETAIL*>(detail)->href;
            aim.assign(link.text, link.size);
            linkStart = target ? PlainText(*target).size() : 0;
        }
    }

    void leaveSpan(MD_SPANTYPE type) {
        if (type == MD_SPAN_CODE || type == MD_SPAN_STRONG || type == MD_SPAN_EM) styles.pop_back();
        if (type == MD_SPAN_IMG) add("]");
        if (type == MD_SPAN_A) addAim();
    }

    void text(MD_TEXTTYPE type, std::string_view text) {
        constexpr std::pair<std::string_view, std::string_view> kEntities[] = {
            {"&lt;", "<"}, {"&gt;", ">"}, {"&amp;", "&"}, {"&quot;", "\""}, {"&apos;", "'"}, {"&nbsp;", " "}};
        if (type == MD_TEXT_HTML) return;
        if (type == MD_TEXT_BR || type == MD_TEXT_SOFTBR) text = " ";
        const auto* const entity =
            std::ranges::find(kEntities, text, &std::pair<std::string_view, std::string_view>::first);
        add(type == MD_TEXT_ENTITY && entity != std::end(kEntities) ? entity->second : text);
    }

private:
    struct List {
        unsigned next = 0;  // number of the next item; 0: the items have none
    };

    DocBlock& open(DocBlock::Kind kind) {
        blocks.push_back({.kind = kind, .depth = lists.size(), .marker = std::exchange(marker, "")});
        target = &blocks.back().text;
        return blocks.back();
    }

    void enterList(unsigned start) {
        target = nullptr;
        lists.push_back({start});
    }

    void enterItem() {
        target = nullptr;
        marker = lists.back().next == 0 ? "-" : fmt::format("{}.", lists.back().next++);
    }

    void add(std::string_view text) {
        if (!target) open(DocBlock::Kind::paragraph);  // items of tight lists have no paragraphs
        const DocSpan::Style style = styles.empty() ? DocSpan::Style::plain : styles.back();
        if (target->empty() || target->back().style != style) target->push_back({"", style});
        target->back().text += text;
    }

    // Where a link leads to, unless its words say that.
    void addAim() {
        const std::string words = target ? PlainText(*target).substr(linkStart) : "";
        const std::size_t ending = aim.find(kPageEnding);
        if (ending == std::string::npos || aim.find(':') != std::string::npos) return;
        const std::size_t start = aim.find_last_of('/', ending) + 1;
        const std::string page = aim.substr(start, ending - start);
        if (words.find(page) == std::string::npos) add(" (" + page + ")");
    }

    DocText* target = nullptr;  // what text is added to; null between blocks
    std::vector<DocSpan::Style> styles;
    std::vector<List> lists;
    std::string marker;  // of the item whose first block is still to come
    std::string aim;     // of the link that is open
    std::size_t linkStart = 0;
};

PageReader& Reader(void* data) {
    return *static_cast<PageReader*>(data);
}

}  // namespace

std::string PlainText(const DocText& text) {
    std::string plain;
    for (const DocSpan& span : text) plain += span.text;
    return plain;
}

std::vector<DocBlock> ReadMarkdown(std::string_view page) {
    MD_PARSER parser = {};
    parser.flags = MD_FLAG_TABLES;
    parser.enter_block = [](MD_BLOCKTYPE type, void* detail, void* data) {
        Reader(data).enterBlock(type, detail);
        return 0;
    };
    parser.leave_block = [](MD_BLOCKTYPE type, void*, void* data) {
        Reader(data).leaveBlock(type);
        return 0;
    };
    parser.enter_span = [](MD_SPANTYPE type, void* detail, void* data) {
        Reader(data).enterSpan(type, detail);
        return 0;
    };
    parser.leave_span = [](MD_SPANTYPE type, void*, void* data) {
        Reader(data).leaveSpan(type);
        return 0;
    };
    parser.text = [](MD_TEXTTYPE type, const MD_CHAR* text, MD_SIZE size, void* data) {
        Reader(data).text(type, {text, size});
        return 0;
    };
    PageReader reader;
    md_parse(page.data(), static_cast<MD_SIZE>(page.size()), &parser, &reader);
    return std::move(reader.blocks);
}

}  // namespace quillon::cli
