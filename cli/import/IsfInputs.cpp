#include "cli/import/IsfInputs.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "cli/import/ControlNames.h"
#include "cli/import/LenientJson.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostEntries = 200;    // of a popup
constexpr double kLargestNormalRange = 100;  // a point's range beyond this is one of pixels
constexpr std::array<double, 2> kGuessedSize = {1920, 1080};

class InputReader {
public:
    InputReader(std::string name, const std::function<void(const std::string&)>& say)
        : inputName(std::move(name)), warn(say) {}

    const char* read(const std::string& type, const Json& input, PlannedControl& control) {
        struct Type {
            const char* name;
            const char* uniform;
            void (InputReader::*read)(PlannedControl&, const Json&);
        };
        constexpr Type kTypes[] = {
            {"float", "float", &InputReader::readFloat},  {"bool", "bool", &InputReader::readBool},
            {"long", "int", &InputReader::readLong},      {"event", "bool", &InputReader::readEvent},
            {"point2D", "vec2", &InputReader::readPoint}, {"color", "vec4", &InputReader::readColor}};
        for (const Type& row : kTypes) {
            if (type != row.name) continue;
            warnOfValues(type, input);
            (this->*row.read)(control, input);
            return row.uniform;
        }
        return nullptr;
    }

private:
    // Of values that are not of the input's kind, in whose place those of an absent key come.
    void warnOfValues(const std::string& type, const Json& input) {
        const std::size_t count = type == "color" ? 3 : type == "point2D" ? 2 : 0;
        for (const char* key : {"DEFAULT", "MIN", "MAX"}) {
            const auto value = input.find(key);
            if (value == input.end() || value->is_null() || type == "event") continue;
            const bool isNumber = NumberOf(input, key, 0) == NumberOf(input, key, 1) || IsTrue(input, key) ||
                                  TextOf(input, key) == "false";
            if (count == 0 ? isNumber : NumbersOf(input, key, count).has_value()) continue;
            warn(fmt::format("input \"{}\": its {} is no {}, and is ignored", inputName, key,
                             count == 0 ? "number" : fmt::format("list of {} numbers", count)));
        }
    }

    void readFloat(PlannedControl& control, const Json& input) {
        double least = NumberOf(input, "MIN", 0);
        double most = NumberOf(input, "MAX", std::max(least + 1, 1.0));
        const bool hasDefault = input.contains("DEFAULT");
        const double value = NumberOf(input, "DEFAULT", std::clamp(0.0, std::min(least, most), std::max(least, most)));
        if (hasDefault && (value < std::min(least, most) || value > std::max(least, most)))
            warn(fmt::format("input \"{}\": its default {} is outside of its range, which is widened", control.name,
                             value));
        FitRange(least, most, value);
        control.value[0] = value;
        control.least[0] = least;
        control.most[0] = most;
        control.precision = DecimalsFor(least, most);
    }

    void readBool(PlannedControl& control, const Json& input) {
        control.kind = PlannedControl::Kind::toggle;
        control.value[0] = IsTrue(input, "DEFAULT") ? 1 : 0;
    }

    void readEvent(PlannedControl& control, const Json&) {
        control.kind = PlannedControl::Kind::toggle;
        warn(
            fmt::format("input \"{}\": a click cannot last one frame; it is a check box, off, and the event "
                        "is there in every frame while it is on: animate it",
                        control.name));
    }

    void readLong(PlannedControl& control, const Json& input) {
        control.kind = PlannedControl::Kind::popup;
        const auto listOf = [&](const char* key) {
            const auto list = input.find(key);
            return list != input.end() && list->is_array() ? *list : Json::array();
        };
        const Json values = listOf("VALUES");
        const Json entries = listOf("LABELS");
        for (std::size_t i = 0; i < std::max(values.size(), entries.size()); ++i) {
            const Json pair = {{"value", i < values.size() ? values[i] : Json(i)},
                               {"label", i < entries.size() ? entries[i] : Json()}};
            AddEntry(control, static_cast<int>(std::clamp(NumberOf(pair, "value", 0), -2e9, 2e9)),
                     TextOf(pair, "label"));
        }
        const double first = control.values.empty() ? NumberOf(input, "MIN", 0) : control.values[0];
        const int value = static_cast<int>(std::clamp(NumberOf(input, "DEFAULT", first), -2e9, 2e9));
        if (control.values.empty()) {
            const double least = std::clamp(NumberOf(input, "MIN", std::min(0, value)), -2e9, 2e9);
            const double most =
                std::min(std::clamp(NumberOf(input, "MAX", std::max(9, value)), -2e9, 2e9), least + kMostEntries - 1);
            for (int i = 0; least + i <= most; ++i) AddEntry(control, static_cast<int>(least + i), "");
            warn(fmt::format("input \"{}\": it has no VALUES; its entries are the numbers from {} to {}", control.name,
                             least, most));
        }
        if (std::ranges::find(control.values, value) == control.values.end()) {
            warn(fmt::format("input \"{}\": its default {} is none of its VALUES; it is added to them", control.name,
                             value));
            AddEntry(control, value, "");
        }
        if (control.values.size() == 1) AddEntry(control, value, control.entries[0]);  // hosts have no popup of one
        control.value[0] = value;
    }

    // Hosts part the entries at a bar, and draw a line for one that begins with a bracket and a hyphen.
    static void AddEntry(PlannedControl& control, int value, std::string label) {
        if (label.empty()) label = std::to_string(value);
        std::ranges::replace(label, '|', '/');
        if (label.starts_with("(-")) label.insert(1, " ");
        control.values.push_back(value);
        control.entries.push_back(label);
    }

    static std::optional<std::vector<double>> NumbersOf(const Json& input, const char* key, std::size_t count) {
        const auto list = input.find(key);
        if (list == input.end() || !list->is_array() || list->size() < count) return std::nullopt;
        std::vector<double> numbers;
        for (const Json& value : *list) numbers.push_back(NumberOf({{"value", value}}, "value", 0));
        return numbers;
    }

    void readPoint(PlannedControl& control, const Json& input) {
        control.kind = PlannedControl::Kind::point;
        const auto value = NumbersOf(input, "DEFAULT", 2).value_or(std::vector<double>{0, 0});
        const auto least = NumbersOf(input, "MIN", 2);
        const auto most = NumbersOf(input, "MAX", 2);
        const auto isBeyond = [&](double limit) {
            const auto isLarge = [limit](double number) { return std::abs(number) > limit; };
            return most ? std::ranges::any_of(*most, isLarge) : std::ranges::any_of(value, isLarge);
        };
        control.isPixels = isBeyond(most ? kLargestNormalRange : 1);
        for (std::size_t i = 0; i < 2; ++i) {
            control.value[i] = value[i];
            control.least[i] = least ? (*least)[i] : 0;
            control.most[i] = most ? (*most)[i] : control.isPixels ? kGuessedSize[i] : 1;
            FitRange(control.least[i], control.most[i], value[i]);
        }
        if (control.isPixels)
            warn(
                fmt::format("input \"{}\": it counts in pixels; its default is placed as in a picture of {} "
                            "by {} pixels",
                            control.name, control.most[0], control.most[1]));
    }

    void readColor(PlannedControl& control, const Json& input) {
        control.kind = PlannedControl::Kind::color;
        control.value = {0, 0, 0, 1};
        const auto value = NumbersOf(input, "DEFAULT", 3);
        if (!value) return;
        std::copy_n(value->begin(), std::min<std::size_t>(value->size(), 4), control.value.begin());
    }

    std::string inputName;
    const std::function<void(const std::string&)>& warn;
};

}  // namespace

const char* ReadIsfControl(const std::string& type, const Json& input, PlannedControl& control,
                           const std::function<void(const std::string& words)>& warn) {
    return InputReader(control.name, warn).read(type, input, control);
}

}  // namespace quillon::cli
