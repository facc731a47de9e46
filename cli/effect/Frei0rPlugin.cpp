#include "cli/effect/Frei0rPlugin.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "cli/diagnostics/TextScanner.h"
#include "cli/effect/ConfigChecks.h"
#include "cli/effect/EffectDescription.h"
#include "cli/effect/LinkedEngine.h"
#include "cli/effect/LoadedEffect.h"
#include "package/ConfigDocument.h"

namespace quillon::cli {

namespace {

using frei0r::PluginType;
using frei0r::Role;

// A control without a range in the script: two turns, so that every default within a turn, either way, has its place.
constexpr float kMostDegrees = 360;

// Hosts take parameters from their command lines as NAME=VALUE, where colons and bars separate other things.
std::string CleanName(std::string text) {
    std::ranges::replace_if(
        text,
        [](char c) {
            return static_cast<unsigned char>(c) < ' ' || std::string_view("=:|\x7f").find(c) != std::string_view::npos;
        },
        ' ');
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

std::string RangeText(float low, float high, const char* unit = "") {
    return fmt::format("0 is {}, 1 is {}{}", low, high, unit);
}

// "0: Barrel; 1: Pincushion"
std::string EntriesText(const Parameter& popup) {
    std::string text;
    std::string_view rest = popup.choices;
    for (std::uint32_t i = 0; i < popup.choiceCount; ++i) {
        const std::string_view entry = rest.substr(0, rest.find('|'));
        rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
        const double value = popup.choiceCount > 1 ? static_cast<double>(i) / (popup.choiceCount - 1) : 0;
        text += fmt::format("{}{:.3g}: {}", text.empty() ? "" : "; ", value, entry);
    }
    return text;
}

// Takes the text up to the end of its next word, and gives the word; empty at the end of the text.
std::string_view TakeWord(std::string_view& text) {
    text.remove_prefix(static_cast<std::size_t>(std::ranges::find_if(text, IsWordCharacter) - text.begin()));
    const std::string_view word =
        text.substr(0, static_cast<std::size_t>(std::ranges::find_if_not(text, IsWordCharacter) - text.begin()));
    text.remove_prefix(word.size());
    return word;
}

// By the name of a uniform: whether a shader may use its fourth channel.
using AlphaUses = std::map<std::string, bool, std::less<>>;

// Adds the uniforms of the shader in a file. One is without alpha when each use of it names channels of "rgb" or "xyz".
void AddAlphaUses(const std::string& file, AlphaUses& uses) {
    std::map<std::string_view, bool> words;  // whether a use of the word is more than those channels
    std::vector<std::string_view> uniforms;
    std::string_view rest = file;
    for (std::string_view word = TakeWord(rest); !word.empty(); word = TakeWord(rest)) {
        if (word == "uniform") {
            std::string_view declaration = rest.substr(0, rest.find(';'));
            rest.remove_prefix(declaration.size());
            while (!(word = TakeWord(declaration)).empty()) uniforms.push_back(word);
            continue;
        }
        std::string_view channels = rest;
        TakeWord(channels);
        const std::string_view use = rest.substr(0, rest.size() - channels.size());
        const bool hasOnlyColor = use.find('.') != std::string_view::npos &&
                                  use.find_first_not_of(" \t\r\n.rgbxyz") == std::string_view::npos;
        words[word] = words[word] || !hasOnlyColor;
    }
    for (const std::string_view uniform : uniforms) {
        bool& usesAlpha = uses[std::string(uniform)];
        usesAlpha = usesAlpha || words[uniform];
    }
}

class PluginLister {
public:
    explicit PluginLister(const EffectSource& effect) : source(effect), config(effect.textOf("config.xml")) {}

    Frei0rPlugin list() {
        addIdentity();
        const LoadedEffect loaded(source, {});
        const std::vector<Parameter> declarations = LinkedEngine::Declarations();
        for (const PackageFile& file : source.files) AddAlphaUses(source.textOf(file.name), alphaUses);
        for (std::uint32_t i = 0; i < declarations.size(); ++i) addControl(i, declarations[i]);
        warnOfOutputs();
        return std::move(plugin);
    }

private:
    void addIdentity() {
        frei0r::Listing& listing = plugin.listing;
        listing.name = ConfigText(config, L"FXNAME");
        if (listing.name.empty()) listing.name = source.path.stem().string();
        listing.explanation = ConfigText(config, L"ABOUT");
        listing.type = config.GetInteger(L"GENERATOR") != 0 ? PluginType::source : PluginType::filter;
        listing.majorVersion = static_cast<std::uint32_t>(std::max(config.GetInteger(L"MAJOR_VERSION"), 0));
        listing.minorVersion = static_cast<std::uint32_t>(std::max(config.GetInteger(L"MINOR_VERSION"), 0));
        const bool isDeep =
            (static_cast<std::uint32_t>(config.GetInteger(L"FLAGS")) & PF_OutFlag_DEEP_COLOR_AWARE) != 0;
        const bool isFloat =
            (static_cast<std::uint32_t>(config.GetInteger(L"FLAGS2")) & PF_OutFlag2_FLOAT_COLOR_AWARE) != 0;
        if (isDeep || isFloat)
            warn("config.xml", FindKey(source, isDeep ? "FLAGS" : "FLAGS2").line, Diagnostic::Kind::config,
                 "frei0r has 8 bits per channel; the effect's 16 and 32 bits stay unused");
    }

    void addControl(std::uint32_t index, const Parameter& declared) {
        const bool isHidden = (declared.flags & ParameterFlag::kHidden) != 0;
        const HostControl shown = ControlKindOf(declared.kind).hostControl;
        if (shown == HostControl::groupStart) groups.push_back(isHidden ? "" : CleanName(declared.label));
        if (shown == HostControl::groupEnd && !groups.empty()) groups.pop_back();
        if (isHidden) return;
        const auto add = [&](Role role, const char* part, std::string explanation, float low = 0, float high = 1) {
            frei0r::ListedControl& control = plugin.listing.controls.emplace_back();
            control.name = nameOf(declared, part);
            control.explanation = std::move(explanation);
            control.role = role;
            control.declaration = index;
            control.low = low;
            control.high = high;
            std::memcpy(control.declared.data(), declared.value, control.declared.size());
        };
        const float low = declared.min[0], high = declared.max[0];
        switch (shown) {
            case HostControl::floatSlider:
                return add(Role::number, "", RangeText(low, high), low, high);
            case HostControl::angle:
                return add(Role::angle, "", RangeText(-kMostDegrees, kMostDegrees, " degrees"), -kMostDegrees,
                           kMostDegrees);
            case HostControl::checkbox:
                return add(Role::checkBox, "", "0 is off, 1 is on");
            case HostControl::popup:
                return add(Role::popup, "", EntriesText(declared), 1, static_cast<float>(declared.choiceCount));
            case HostControl::color:
                add(Role::color, "", "red, green and blue");
                if (hasAlpha(declared)) add(Role::alpha, " alpha", RangeText(0, 1));
                return;
            case HostControl::point2D:
                return add(Role::point, "", "in shares of the frame, from its top left corner");
            case HostControl::point3D:
                add(Role::point3D, "", "x and y, in shares of the frame, from its top left corner");
                return add(Role::depth, " depth", RangeText(low, high, " pixels"), low, high);
            case HostControl::layer:
                return addLayer(index, declared);
            case HostControl::none:
            case HostControl::groupStart:
            case HostControl::groupEnd:
                return;
            default:
                return warnOf(declared, "frei0r has no such control; it is left out");
        }
    }

    void addLayer(std::uint32_t index, const Parameter& declared) {
        frei0r::Listing& listing = plugin.listing;
        if (listing.type == PluginType::source)
            return warnOf(declared, "a generator has no inputs; the layer is empty");
        if (listing.type == PluginType::mixer2)
            return warnOf(declared, "frei0r has one layer beside the input; this one is empty");
        listing.type = PluginType::mixer2;
        listing.layer = index;
    }

    // The names of its groups, then its label: the only thing by which hosts distinguish parameters.
    std::string nameOf(const Parameter& declared, const char* part) const {
        std::string name;
        for (const std::string& group : groups) name += group.empty() ? "" : group + " / ";
        const std::string label = CleanName(declared.label);
        name += (label.empty() ? CleanName(declared.uniformName) : label) + part;
        const auto isTaken = [this](const std::string& candidate) {
            return std::ranges::any_of(plugin.listing.controls,
                                       [&](const frei0r::ListedControl& control) { return control.name == candidate; });
        };
        std::string unique = name;
        for (int count = 2; isTaken(unique); ++count) unique = fmt::format("{} {}", name, count);
        return unique;
    }

    // Whether a color's alpha may reach a pixel: not when the shaders that have a uniform of its name use its red,
    // green and blue and nothing else of it. A color that goes to the shaders by another name may be used in any way.
    bool hasAlpha(const Parameter& color) const {
        const auto found = alphaUses.find(color.uniformName);
        return found == alphaUses.end() || found->second;
    }

    void warnOfOutputs() {
        const std::string script = source.textOf("fx.js");
        const std::size_t found = script.find("setOutputExtent");
        if (found == std::string::npos) return;
        const auto line =
            static_cast<int>(1 + std::count(script.begin(), script.begin() + static_cast<std::ptrdiff_t>(found), '\n'));
        warn("fx.js", line, Diagnostic::Kind::package,
             "frei0r frames keep their size; an output that is larger is cropped to the input's frame");
    }

    void warnOf(const Parameter& declared, const char* words) {
        warn("fx.js", 0, Diagnostic::Kind::package,
             fmt::format("{} \"{}\": {}", declared.uniformName, declared.label, words));
    }

    void warn(const char* file, int line, Diagnostic::Kind kind, const std::string& text) {
        plugin.warnings.push_back({.path = source.pathOf(file),
                                   .line = line,
                                   .severity = Diagnostic::Severity::warning,
                                   .text = text,
                                   .kind = kind});
    }

    const EffectSource& source;
    const ConfigDocument config;
    Frei0rPlugin plugin;
    AlphaUses alphaUses;
    std::vector<std::string> groups;  // those that are open
};

}  // namespace

Frei0rPlugin DescribePlugin(const EffectSource& source) {
    return PluginLister(source).list();
}

}  // namespace quillon::cli
