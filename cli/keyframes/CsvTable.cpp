#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <optional>

#include "cli/diagnostics/TextScanner.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/keyframes/Keyframes.h"

// A table as spreadsheets write it: the first row has "frame" and names of controls, the others a frame and values as
// --key takes them. Commas, semicolons or tabs between the cells, whichever comes first; cells in double quotes may
// hold them. An empty cell is no key. Positions and colors are one cell "x,y", or a column for each number: center.x,
// center.y, tint.r.

namespace quillon::cli {

namespace {

using CsvRow = std::vector<std::string>;

char SeparatorOf(std::string_view text) {
    const std::size_t at = text.substr(0, text.find('\n')).find_first_of(",;\t");
    return at == std::string_view::npos ? ',' : text[at];
}

// A cell from the front of the text, up to its separator or the row's end, which stay.
std::string TakeCell(std::string_view& text, char separator) {
    std::string cell;
    bool isQuoted = false;
    while (!text.empty() && (isQuoted || (text.front() != separator && text.front() != '\n'))) {
        const char c = text.front();
        text.remove_prefix(1);
        if (c != '"') {
            cell += c;
        } else if (isQuoted && TakeText(text, "\"")) {
            cell += '"';
        } else {
            isQuoted = !isQuoted;
        }
    }
    while (!cell.empty() && (cell.back() == '\r' || cell.back() == ' ')) cell.pop_back();
    cell.erase(0, std::min(cell.find_first_not_of(' '), cell.size()));
    return cell;
}

std::vector<CsvRow> SplitRows(std::string_view text) {
    const char separator = SeparatorOf(text);
    std::vector<CsvRow> rows;
    while (!text.empty()) {
        CsvRow& row = rows.emplace_back();
        do row.push_back(TakeCell(text, separator));
        while (TakeText(text, {&separator, 1}));
        TakeText(text, "\n");
    }
    return rows;
}

// What a column holds: a whole value, or one of its numbers.
struct Column {
    const Control* control = nullptr;
    std::optional<std::size_t> component{};
};

// By the letter after the last dot; colors may have no alpha.
std::optional<std::size_t> ComponentOf(std::uint32_t kind, std::string_view letter) {
    const std::string_view letters = kind == COLOR ? "rgba" : kind == POINT ? "xyz" : kind == POINT2D ? "xy" : "";
    const std::size_t at = letter.size() == 1 ? letters.find(letter) : std::string_view::npos;
    return at == std::string_view::npos ? std::nullopt : std::optional(at);
}

Column ColumnOf(const std::vector<Control>& controls, const std::string& name) {
    const std::size_t dot = name.rfind('.');
    if (dot != std::string::npos) {
        for (const Control& control : controls) {
            const auto component = ComponentOf(control.declared.kind, std::string_view(name).substr(dot + 1));
            const std::string whole = name.substr(0, dot);
            if (component && (control.declared.uniformName == whole || control.declared.label == whole))
                return {&control, component};
        }
    }
    return {&FindControl(controls, name)};
}

// The numbers of one value, from separate columns.
struct Components {
    std::array<std::string, 4> texts;
    std::string joined() const {
        const auto end = std::find_if(texts.rbegin(), texts.rend(), [](const auto& text) { return !text.empty(); });
        return fmt::format("{}", fmt::join(texts.begin(), end.base(), ","));
    }
};

}  // namespace

void Keyframes::addCsv(std::string_view text) {
    const std::vector<CsvRow> rows = SplitRows(text);
    if (rows.empty() || InLowerCase(rows[0][0]) != "frame")
        throw Fault("row 1", "its first column is not \"frame\"", "begin the first row with frame, then name controls");
    std::vector<Column> columns(1);
    for (std::size_t i = 1; i < rows[0].size(); ++i) {
        try {
            columns.push_back(ColumnOf(controls, rows[0][i]));
        } catch (ToolError& error) {
            error.faults.front().path = fmt::format("row 1, column {}: {}", i + 1, rows[0][i]);
            throw;
        }
    }
    for (std::size_t y = 1; y < rows.size(); ++y) {
        const CsvRow& row = rows[y];
        if (std::ranges::all_of(row, [](const std::string& cell) { return cell.empty(); })) continue;
        std::string_view rest = row[0];
        const auto frame = TakeNumber(rest);
        if (!frame || !rest.empty()) throw Fault(fmt::format("row {}", y + 1), "begins with no frame number");
        if (row.size() > columns.size()) throw Fault(fmt::format("row {}", y + 1), "has more cells than the first row");
        std::map<const Control*, Components> byControl;
        for (std::size_t i = 1; i < row.size(); ++i) {
            if (row[i].empty()) continue;
            const Column& column = columns[i];
            try {
                if (column.component)
                    byControl[column.control].texts[*column.component] = row[i];
                else
                    add(*column.control, *frame, row[i]);
            } catch (ToolError& error) {
                error.faults.front().path = fmt::format("row {}, column {} ({})", y + 1, i + 1, rows[0][i]);
                throw;
            }
        }
        for (const auto& [control, components] : byControl) {
            try {
                add(*control, *frame, components.joined());
            } catch (ToolError& error) {
                error.faults.front().path = fmt::format("row {}, columns of {}", y + 1, control->declared.uniformName);
                throw;
            }
        }
    }
}

}  // namespace quillon::cli
