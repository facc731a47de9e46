#include "cli/commands/Commands.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "cli/diagnostics/PrintLine.h"
#include "cli/effect/ControlTexts.h"
#include "cli/effect/LoadedEffect.h"

namespace quillon::cli {

namespace {

using Row = std::vector<std::string>;

// Characters, as far as a terminal gives each one column.
std::size_t WidthOf(const std::string& text) {
    return static_cast<std::size_t>(std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

void PrintTable(const std::vector<Row>& rows) {
    std::vector<std::size_t> widths(rows.front().size());
    for (const Row& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], WidthOf(row[i]));
    for (const Row& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) line += row[i] + std::string(widths[i] - WidthOf(row[i]) + 2, ' ');
        line.resize(line.find_last_not_of(' ') + 1);
        PrintResult(line);
    }
}

std::string TextOf(const nlohmann::ordered_json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (!value.is_array()) return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    std::string text;
    const char* const between = !value.empty() && value[0].is_string() ? "|" : ",";
    for (const auto& element : value) text += (text.empty() ? "" : between) + TextOf(element);
    return text;
}

// The fields that every control has are columns; what its type adds follows them.
constexpr std::array kColumns = {"index", "uniform", "kind",     "type",  "name",
                                 "id",    "flags",   "ui_flags", "value", "default"};

struct FlagWord {
    std::int64_t bit;
    const char* word;
};
constexpr FlagWord kFlagWords[] = {
    {PF_ParamFlag_CANNOT_TIME_VARY, "fixed"},
    {PF_ParamFlag_CANNOT_INTERP, "no-interpolation"},
    {PF_ParamFlag_COLLAPSE_TWIRLY, "collapsed"},
    {PF_ParamFlag_SUPERVISE, "supervised"},
    {PF_ParamFlag_USE_VALUE_FOR_OLD_PROJECTS, "value-for-old-projects"},
};
constexpr FlagWord kUiFlagWords[] = {
    {PF_PUI_TOPIC, "topic"},
    {PF_PUI_CONTROL, "control"},
    {PF_PUI_STD_CONTROL_ONLY, "standard-control"},
    {PF_PUI_NO_ECW_UI, "not-in-panel"},
    {PF_PUI_DISABLED, "disabled"},
    {PF_PUI_INVISIBLE, "invisible"},
};

// The flags by name, and what has none as a number.
std::string Words(std::int64_t flags, std::span<const FlagWord> words) {
    std::string text;
    const auto add = [&](const std::string& word) { text += (text.empty() ? "" : "|") + word; };
    for (const FlagWord& row : words) {
        if ((flags & row.bit) != 0) add(row.word);
        flags &= ~row.bit;
    }
    if (flags != 0) add(std::to_string(flags));
    return text.empty() ? "none" : text;
}

Row RowOf(const nlohmann::ordered_json& control) {
    Row row;
    for (const std::string column : kColumns) {
        std::string text = control.contains(column) ? TextOf(control[column]) : "";
        if (column == "flags") text = Words(control[column].get<std::int64_t>(), kFlagWords);
        if (column == "ui_flags") text = Words(control[column].get<std::int64_t>(), kUiFlagWords);
        row.push_back(std::move(text));
    }
    std::string& rest = row.emplace_back();
    for (const auto& [key, value] : control.items()) {
        if (key == "label" || key == "param_type" || std::ranges::find(kColumns, key) != kColumns.end()) continue;
        rest += (rest.empty() ? "" : " ") + key + "=" + TextOf(value);
    }
    return row;
}

}  // namespace

int RunParams(const ParamsOptions& options) {
    const LoadedEffect effect(ReadCheckedSource(options.effect), {});
    nlohmann::ordered_json list = nlohmann::ordered_json::array();
    for (std::size_t i = 0; i < effect.controls().size(); ++i)
        list.push_back(DescribeControl(effect.controls()[i], effect.parameters()[i]));
    if (options.isJson) {
        PrintResult(list.dump(2, ' ', false, nlohmann::json::error_handler_t::replace));
        return 0;
    }
    if (list.empty()) {
        PrintResult("no controls");
        return 0;
    }
    std::vector<Row> rows = {{kColumns.begin(), kColumns.end()}};
    rows.front().push_back("more");
    for (const auto& control : list) rows.push_back(RowOf(control));
    PrintTable(rows);
    return 0;
}

}  // namespace quillon::cli
