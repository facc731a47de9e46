#include "cli/check/watch/DeclarationChecks.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

#include "cli/diagnostics/TextScanner.h"
#include "entities/Context.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

constexpr std::size_t kHostLabelBytes = 31;
constexpr float kSmallRange = 10;
constexpr float kSmallChosenRange = 2;  // of a slider that has asked for no decimal places

const Parameter& ControlOf(std::uint32_t id) {
    return Context::Instance().FindParameter(id);
}

std::string WordsOfControl(const Parameter& control) {
    return fmt::format("control '{}'", control.uniformName);
}

bool IsGroup(const Parameter& control) {
    return control.kind == GROUP_START || control.kind == GROUP_END;
}

bool HasEmptyEntry(const std::string& choices) {
    return choices.starts_with('|') || choices.ends_with('|') || choices.find("||") != std::string::npos;
}

}  // namespace

void DeclarationChecks::before(const NativeCall& call) {
    const bool isPrecision = call.name() == "QL_setParamPrecision";
    const bool isSetter = call.name() == "QL_setParamValue" || call.name() == "QL_setParamMinMax";
    const std::uint32_t id = call.idOf(0).value_or(0);
    for (Declaration& declaration : declarations)
        if (isPrecision && declaration.id == id) declaration.hasPrecision = true;
    if (!isSetter || KindOfId(id) != EntityKind::control || !IsLive(id)) return;
    const Parameter& control = ControlOf(id);
    if (call.name() == "QL_setParamValue") return checkValue(call, control);
    if (control.kind != FLOAT)
        run.findings.add("script/no-effect", call,
                         fmt::format("{} is {}, which has no range", WordsOfControl(control),
                                     WithArticle(ControlKindOf(control.kind).name)),
                         "only a FLOAT has one");
    for (Declaration& declaration : declarations)
        if (declaration.id == id) declaration.hasRange = true;
}

void DeclarationChecks::checkValue(const NativeCall& call, const Parameter& control) const {
    const ControlKind& kind = ControlKindOf(control.kind);
    const bool takesArray = kind.scriptForm == ScriptForm::elements || kind.scriptForm == ScriptForm::tuple;
    const bool isArray = call.typeOf(1) == NativeCall::Type::array;
    std::string needed;
    if (takesArray && call.lengthOf(1) != kind.floats)
        needed = fmt::format("an array of {} numbers", kind.floats);
    else if (!takesArray && kind.scriptForm != ScriptForm::none &&
             std::isnan(call.numberOf(1).value_or(isArray ? NAN : 0)))
        needed = "a number";
    else if (kind.scriptForm == ScriptForm::none)
        return run.findings.add(
            "script/no-effect", call,
            fmt::format("{} is {}, which has no value", WordsOfControl(control), WithArticle(kind.name)));
    if (needed.empty()) return;
    run.findings.add("script/wrong-value", call,
                     fmt::format("{} is {}, which takes {}", WordsOfControl(control), WithArticle(kind.name), needed),
                     {}, control.uniformName);
}

void DeclarationChecks::after(const NativeCall& call) {
    const auto id = static_cast<std::uint32_t>(call.resultNumber());
    if (call.name() != "QL_initParam" || id == 0 || run.entry != Entry::setup) return;
    Declaration& declaration = declarations.emplace_back();
    declaration.id = id;
    call.lines(declaration.lines);
}

// Of the innermost call that declares nothing else.
int DeclarationChecks::lineOf(const Declaration& declaration) const {
    for (std::size_t level = 0; level < declaration.lines.size(); ++level) {
        const int line = declaration.lines[level];
        const bool isShared = std::ranges::any_of(declarations, [&](const Declaration& other) {
            return other.id != declaration.id && other.lines[level] == line;
        });
        if (line != 0 && !isShared) return line;
    }
    return declaration.lines[0];
}

void DeclarationChecks::add(const char* rule, const Declaration& declaration, const std::string& text,
                            std::string remedy) {
    run.findings.add(rule, run.findings.placeOf(lineOf(declaration)), text, std::move(remedy),
                     fmt::format("{}", declaration.id));
}

void DeclarationChecks::entryEnds(bool /*hasFailed*/) {
    if (run.entry != Entry::setup) return;
    std::erase_if(declarations, [](const Declaration& declaration) { return !IsLive(declaration.id); });
    for (const Declaration& declaration : declarations) checkOne(declaration, ControlOf(declaration.id));
    checkNames();
    checkGroups();
    declarations.clear();
}

void DeclarationChecks::checkOne(const Declaration& declaration, const Parameter& control) {
    const std::string words = WordsOfControl(control);
    if (ControlKindOf(control.kind).hostControl == HostControl::none)
        add("script/unknown-kind", declaration, fmt::format("{} is of no kind that hosts show", words));
    if ((control.flags & ParameterFlag::kHidden) != 0) return;
    if (control.label.size() > kHostLabelBytes)
        add("script/long-label", declaration,
            fmt::format("the label of {} has {} bytes, of which hosts show {}", words, control.label.size(),
                        kHostLabelBytes));
    if (control.kind == FLOAT) checkSlider(declaration, control);
    if (control.kind == POPUP || control.kind == TEXTURE) checkPopup(declaration, control);
    if (control.kind == COLOR) checkColor(declaration, control);
    if (control.kind == POINT2D) checkPoint(declaration, control);
    if (control.kind == BOOL && control.intValue() != 0 && control.intValue() != 1)
        add("script/default-outside-range", declaration,
            fmt::format("{} has the default {}", WordsOfControl(control), control.intValue()), "give 0 or 1");
}

void DeclarationChecks::checkSlider(const Declaration& declaration, const Parameter& control) {
    const float value = control.floatAt(0), min = control.min[0], max = control.max[0];
    const std::string words = WordsOfControl(control);
    if (!(min < max)) {
        add("script/empty-range", declaration, fmt::format("{} has the range {} to {}", words, min, max));
        return;
    }
    if (!(value >= min && value <= max))
        add("script/default-outside-range", declaration,
            fmt::format("{} has the default {} outside of its range {} to {}", words, value, min, max),
            declaration.hasRange ? "" : "set its range with QL_setParamMinMax");
    // Who asks for no decimal places means whole numbers, of which there must be some.
    const float small = declaration.hasPrecision ? kSmallChosenRange : kSmallRange;
    if (control.flags >> ParameterFlag::kPrecisionShift == 0 && max - min < small)
        add("script/coarse-slider", declaration,
            fmt::format("{} shows whole numbers only, and its range is {} to {}", words, min, max));
}

void DeclarationChecks::checkPopup(const Declaration& declaration, const Parameter& control) {
    const std::string words = WordsOfControl(control);
    if (control.choiceCount == 0 || HasEmptyEntry(control.choices)) {
        add("script/popup-entries", declaration, fmt::format("{} has the entries \"{}\"", words, control.choices));
        return;
    }
    const std::int32_t value = control.intValue();
    if (control.kind == POPUP && (value < 1 || value > static_cast<std::int64_t>(control.choiceCount)))
        add("script/popup-value", declaration,
            fmt::format("{} has {} entries and the default {}", words, control.choiceCount, value));
}

// A default is a share of the picture. Far outside of it pixels are meant.
void DeclarationChecks::checkPoint(const Declaration& declaration, const Parameter& control) {
    constexpr float kFar = 4;
    const float x = control.floatAt(0), y = control.floatAt(1);
    if (std::abs(x) <= kFar && std::abs(y) <= kFar) return;
    add("script/default-outside-range", declaration,
        fmt::format("{} has the default [{}, {}], which counts in pictures, not in pixels", WordsOfControl(control), x,
                    y),
        "give shares of the picture, as [0.5, 0.5] for its middle");
}

void DeclarationChecks::checkColor(const Declaration& declaration, const Parameter& control) {
    float least = 0, most = 0;
    for (int i = 0; i < 4; ++i) {
        least = std::min(least, control.floatAt(i));
        most = std::max(most, control.floatAt(i));
    }
    const bool isOnUnitScale = most > 0 && most <= 1;
    if (!isOnUnitScale && least >= 0 && most <= 255) return;
    add("script/color-scale", declaration,
        fmt::format("{} has the default [{}, {}, {}, {}], and defaults run from 0 to 255", WordsOfControl(control),
                    control.floatAt(0), control.floatAt(1), control.floatAt(2), control.floatAt(3)));
}

// Uniforms are found by name, and the host shows no more of a label than its cut.
void DeclarationChecks::checkNames() {
    std::map<std::string, const Declaration*> names;
    std::map<std::string, const Declaration*> labels;  // of this group
    for (const Declaration& declaration : declarations) {
        const Parameter& control = ControlOf(declaration.id);
        if (IsGroup(control)) {
            labels.clear();
            continue;
        }
        if (const auto [first, isNew] = names.try_emplace(control.uniformName, &declaration); !isNew)
            add("script/same-name", declaration,
                fmt::format("two controls are named '{}'; the first one is declared{}", control.uniformName,
                            run.findings.wordsOfLine(lineOf(*first->second))));
        const std::string shown = control.label.substr(0, kHostLabelBytes);
        if (shown.empty() || (control.flags & ParameterFlag::kHidden) != 0) continue;
        if (const auto [first, isNew] = labels.try_emplace(shown, &declaration); !isNew)
            add("script/same-label", declaration,
                fmt::format("hosts show \"{}\" for two controls, '{}' and '{}'", shown,
                            ControlOf(first->second->id).uniformName, control.uniformName));
    }
}

void DeclarationChecks::checkGroups() {
    std::vector<const Declaration*> open;
    for (const Declaration& declaration : declarations) {
        const Parameter& control = ControlOf(declaration.id);
        if (control.kind == GROUP_START) open.push_back(&declaration);
        if (control.kind != GROUP_END) continue;
        if (open.empty())
            add("script/open-group", declaration,
                fmt::format("{} ends a group that nothing begins", WordsOfControl(control)));
        else
            open.pop_back();
    }
    for (const Declaration* const declaration : open)
        add("script/open-group", *declaration,
            fmt::format("the group '{}' has no end", ControlOf(declaration->id).uniformName));
}

}  // namespace quillon::cli
