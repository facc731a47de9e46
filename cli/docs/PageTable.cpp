#include <algorithm>
#include <numeric>

#include "cli/docs/PageText.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kGap = 2;           // between columns
constexpr std::size_t kLongestWord = 30;  // a longer one may stick out

// The columns' widths: those of their longest cells, the widest made smaller until the table fits.
std::vector<std::size_t> ColumnWidths(const DocBlock& table, std::size_t columns) {
    std::vector<std::size_t> widths(table.rows.front().size()), least(widths.size());
    for (const auto& row : table.rows) {
        for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], WidthOfText(PlainText(row[i])));
            for (const DocText& word : WrapText(row[i], 1))
                least[i] = std::max(least[i], std::min(WidthOfText(PlainText(word)), kLongestWord));
        }
    }
    const std::size_t gaps = kGap * (widths.size() - 1);
    std::size_t total = std::accumulate(widths.begin(), widths.end(), gaps);
    for (; total > columns; --total) {
        std::size_t* widest = nullptr;
        for (std::size_t i = 0; i < widths.size(); ++i)
            if (widths[i] > least[i] && (!widest || widths[i] > *widest)) widest = &widths[i];
        if (!widest) break;
        --*widest;
    }
    return widths;
}

std::string Row(const std::vector<DocText>& row, const std::vector<std::size_t>& widths) {
    std::vector<std::vector<DocText>> cells;
    std::size_t lineCount = 0;
    for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i) {
        cells.push_back(WrapText(row[i], widths[i]));
        lineCount = std::max(lineCount, cells.back().size());
    }
    std::string lines;
    for (std::size_t line = 0; line < lineCount; ++line) {
        std::string text;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const std::string cell = line < cells[i].size() ? PlainText(cells[i][line]) : "";
            text += cell + std::string(widths[i] + kGap - std::min(widths[i], WidthOfText(cell)), ' ');
        }
        text.resize(text.find_last_not_of(' ') + 1);
        lines += text + "\n";
    }
    return lines;
}

}  // namespace

std::string WriteTable(const DocBlock& table, const PageLook& look) {
    if (table.rows.empty()) return "";
    const std::vector<std::size_t> widths = ColumnWidths(table, look.columns);
    std::string head = Row(table.rows.front(), widths), text;
    if (head.find_first_not_of(" \n") != std::string::npos) {
        if (look.hasStyles) {
            text = "\x1b[1m" + head.substr(0, head.size() - 1) + "\x1b[0m\n";
        } else {
            text = head;
            for (std::size_t i = 0; i < widths.size(); ++i)
                text += std::string(widths[i], '-') + (i + 1 < widths.size() ? std::string(kGap, ' ') : "\n");
        }
    }
    for (std::size_t i = 1; i < table.rows.size(); ++i) text += Row(table.rows[i], widths);
    return text;
}

}  // namespace quillon::cli
