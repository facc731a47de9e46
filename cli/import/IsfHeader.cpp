#include "cli/import/IsfHeader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

#include "cli/import/BuiltIns.h"
#include "cli/import/ControlNames.h"
#include "cli/import/GlslTokens.h"
#include "cli/import/LenientJson.h"
#include "cli/import/SizeExpression.h"
#include "cli/import/SourceText.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;
using Kind = Diagnostic::Kind;

constexpr std::size_t kMostEntries = 200;     // of a popup
constexpr double kLargestNormalRange = 100;   // a point's range beyond this is one of pixels
constexpr std::size_t kLongestCategory = 31;  // bytes
constexpr std::array<double, 2> kGuessedSize = {1920, 1080};

constexpr const char* kPictureEndings[] = {".png", ".jpg", ".jpeg", ".bmp", ".gif", ".psd", ".hdr", ".tga"};

struct HeaderPlace {
    std::size_t begin = std::string::npos;  // of the comment
    std::size_t end = 0;                    // after it
};

HeaderPlace FindHeader(std::string_view text) {
    std::size_t at = 0;
    for (const GlslToken& token : ReadTokens(text, 1)) {
        if (token.isSignificant()) break;
        const std::string_view source = token.source;
        const std::size_t first = source.find_first_not_of(" \t\n", 2);
        if (source.starts_with("/*") && first != std::string_view::npos && source[first] == '{')
            return {at, at + source.size()};
        at += source.size();
    }
    return {};
}

class HeaderReader {
public:
    HeaderReader(std::string_view text, std::filesystem::path sourceFolder, ImportFindings& importFindings)
        : json(text), folder(std::move(sourceFolder)), findings(importFindings) {}

    // `line` is where the header's text begins.
    void read(IsfFile& isf, int line) {
        file = &isf;
        firstLine = line;
        const Json header = parse();
        if (!header.is_object()) return;
        readWords(header);
        for (const char* key : {"PASSES", "IMPORTED", "PERSISTENT_BUFFERS"}) {
            const Json value = header.value(key, Json());
            const bool isList = value.is_array() || (value.is_object() && key != std::string("PASSES"));
            if (!value.is_null() && !isList)
                findings.refuse(lineOf(key), fmt::format("{} is no list of objects", key), Kind::config);
        }
        readInputs(header);
        readImports(header);
        readPasses(header);
        chooseInput();
    }

private:
    Json parse() {
        const std::string strict = StrictJson(json);
        try {
            return Json::parse(strict);
        } catch (const Json::parse_error& error) {
            refuseJson(error, std::min<std::size_t>(error.byte > 0 ? error.byte - 1 : 0, strict.size()), strict);
        } catch (const Json::exception& error) {  // a number beyond all measure
            refuseJson(error, 0, strict);
        }
        return {};
    }

    void refuseJson(const Json::exception& error, std::size_t place, const std::string& text) {
        std::string words = error.what();
        // In front is the name of the exception.
        if (words.starts_with('[')) words.erase(0, std::min(words.find("] "), words.size() - 2) + 2);
        if (const std::size_t colon = words.find(": "); colon != std::string::npos) words.erase(0, colon + 2);
        findings.refuse(firstLine + LineOf(text, place) - 1, "the header is no JSON: " + words + "; correct it there",
                        Kind::config);
    }

    // The line of the header where this name is written as a text.
    int lineOf(const std::string& name) const {
        const std::size_t place = json.find("\"" + name + "\"");
        return place == std::string_view::npos ? firstLine : firstLine + LineOf(json, place) - 1;
    }

    void readWords(const Json& header) {
        EffectPlan& plan = file->plan;
        plan.about = TextOf(header, "DESCRIPTION");
        const std::string credit = TextOf(header, "CREDIT");
        if (!credit.empty())
            plan.credit = credit.starts_with("by ") || credit.starts_with("By ") ? credit : "By " + credit;
        const auto categories = header.find("CATEGORIES");
        if (categories != header.end()) {
            const Json& first = categories->is_array() && !categories->empty() ? categories->at(0) : *categories;
            if (first.is_string()) plan.category = CutText(first.get<std::string>(), kLongestCategory);
        }
        const std::string version = TextOf(header, "VSN");
        char* end = nullptr;
        const long major = std::strtol(version.c_str(), &end, 10);
        if (end == version.c_str()) return;
        plan.majorVersion = static_cast<int>(std::clamp(major, 0L, 63L));
        if (*end == '.') plan.minorVersion = static_cast<int>(std::clamp(std::strtol(end + 1, nullptr, 10), 0L, 15L));
    }

    // Takes a name for an input, target or import. False, with a finding, when it cannot have it.
    bool claim(const std::string& name, const char* what) {
        if (!IsGlslName(name) || IsGlslKeyword(name)) {
            findings.refuse(lineOf(name),
                            fmt::format("{} \"{}\": no shader can use that name; give it one of letters, digits and "
                                        "underscores that is no word of GLSL",
                                        what, name),
                            Kind::config);
            return false;
        }
        if (FindBuiltIn(name) || name.starts_with("isf_")) {
            findings.refuse(lineOf(name), fmt::format("{} \"{}\": ISF itself has this name; rename it", what, name),
                            Kind::config);
            return false;
        }
        if (!names.insert(name).second) {
            findings.refuse(lineOf(name), fmt::format("{} \"{}\": the name is there twice; rename one", what, name),
                            Kind::config);
            return false;
        }
        return true;
    }

    // The name that the shaders have for it: another one where GLSL keeps the word for itself.
    std::string shaderName(const std::string& name) {
        if (!IsReservedWord(name)) return name;
        const auto known = file->renamed.find(name);
        if (known != file->renamed.end()) return known->second;
        return file->renamed[name] = *names.insert(UnusedName(names, name + "Value")).first;
    }

    void readInputs(const Json& header) {
        const auto inputs = header.find("INPUTS");
        if (inputs == header.end() || inputs->is_null()) return;
        if (!inputs->is_array()) {
            findings.refuse(lineOf("INPUTS"), "INPUTS is no array of objects", Kind::config);
            return;
        }
        int number = 0;
        for (const Json& input : *inputs) {
            ++number;
            if (!input.is_object()) {
                findings.refuse(lineOf("INPUTS"), fmt::format("input {} is no object", number), Kind::config);
                continue;
            }
            const std::string name = Trimmed(TextOf(input, "NAME"));
            const std::string type = TextOf(input, "TYPE");
            if (name.empty() || type.empty()) {
                findings.refuse(lineOf(name.empty() ? "INPUTS" : name),
                                fmt::format("input {} has no {}; every input needs a NAME and a TYPE", number,
                                            name.empty() ? "NAME" : "TYPE"),
                                Kind::config);
                continue;
            }
            if (claim(name, "input")) readInput(name, type, input);
        }
    }

    static std::string Trimmed(const std::string& text) {
        const std::size_t first = text.find_first_not_of(' ');
        return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
    }

    void readInput(const std::string& name, const std::string& type, const Json& input) {
        struct Type {
            const char* name;
            const char* uniform;
            void (HeaderReader::*read)(PlannedControl&, const Json&);
        };
        constexpr Type kTypes[] = {
            {"float", "float", &HeaderReader::readFloat},  {"bool", "bool", &HeaderReader::readBool},
            {"long", "int", &HeaderReader::readLong},      {"event", "bool", &HeaderReader::readEvent},
            {"point2D", "vec2", &HeaderReader::readPoint}, {"color", "vec4", &HeaderReader::readColor}};
        const std::string label = TextOf(input, "LABEL").empty() ? name : TextOf(input, "LABEL");
        for (const Type& row : kTypes) {
            if (type != row.name) continue;
            PlannedControl control{.name = name, .uniform = name, .label = labels.take(label)};
            control.uniform = shaderName(name);
            warnOfValues(name, type, input);
            (this->*row.read)(control, input);
            file->uniforms[control.uniform] = row.uniform;
            file->plan.controls.push_back(control);
            return;
        }
        PlannedImage image{.name = shaderName(name)};
        if (type == "image") {
            image.label = labels.take(label);
        } else if (type == "audio" || type == "audioFFT") {
            image.source = PlannedImage::Source::silence;
            image.color = type == "audio" ? "vec4(0.5)" : "vec4(0.0)";
            findings.warn(
                lineOf(name),
                fmt::format("input \"{}\": effects have no sound; the shader reads silence, {}", name, image.color),
                Kind::config);
        } else {
            findings.refuse(lineOf(name),
                            fmt::format("input \"{}\": type \"{}\" is unknown; known are float, bool, long, event, "
                                        "point2D, color, image, audio and audioFFT",
                                        name, type),
                            Kind::config);
            return;
        }
        file->plan.images.push_back(image);
    }

    // Of values that are not of the input's kind, in whose place those of an absent key come.
    void warnOfValues(const std::string& name, const std::string& type, const Json& input) {
        const std::size_t count = type == "color" ? 3 : type == "point2D" ? 2 : 0;
        for (const char* key : {"DEFAULT", "MIN", "MAX"}) {
            const auto value = input.find(key);
            if (value == input.end() || value->is_null() || type == "event") continue;
            const bool isNumber = NumberOf(input, key, 0) == NumberOf(input, key, 1) || IsTrue(input, key) ||
                                  TextOf(input, key) == "false";
            if (count == 0 ? isNumber : NumbersOf(input, key, count).has_value()) continue;
            findings.warn(lineOf(name),
                          fmt::format("input \"{}\": its {} is no {}, and is ignored", name, key,
                                      count == 0 ? "number" : fmt::format("list of {} numbers", count)),
                          Kind::config);
        }
    }

    void readFloat(PlannedControl& control, const Json& input) {
        double least = NumberOf(input, "MIN", 0);
        double most = NumberOf(input, "MAX", std::max(least + 1, 1.0));
        const bool hasDefault = input.contains("DEFAULT");
        const double value = NumberOf(input, "DEFAULT", std::clamp(0.0, std::min(least, most), std::max(least, most)));
        if (hasDefault && (value < std::min(least, most) || value > std::max(least, most)))
            findings.warn(lineOf(control.name),
                          fmt::format("input \"{}\": its default {} is outside of its range, which is widened",
                                      control.name, value),
                          Kind::config);
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
        findings.warn(lineOf(control.name),
                      fmt::format("input \"{}\": a click cannot last one frame; it is a check box, off, and the event "
                                  "is there in every frame while it is on: animate it",
                                  control.name),
                      Kind::config);
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
            for (double entry = least; entry <= most; ++entry) AddEntry(control, static_cast<int>(entry), "");
            findings.warn(lineOf(control.name),
                          fmt::format("input \"{}\": it has no VALUES; its entries are the numbers from {} to {}",
                                      control.name, least, most),
                          Kind::config);
        }
        if (std::ranges::find(control.values, value) == control.values.end()) {
            findings.warn(lineOf(control.name),
                          fmt::format("input \"{}\": its default {} is none of its VALUES; it is added to them",
                                      control.name, value),
                          Kind::config);
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
            findings.warn(lineOf(control.name),
                          fmt::format("input \"{}\": it counts in pixels; its default is placed as in a picture of {} "
                                      "by {} pixels",
                                      control.name, control.most[0], control.most[1]),
                          Kind::config);
    }

    void readColor(PlannedControl& control, const Json& input) {
        control.kind = PlannedControl::Kind::color;
        control.value = {0, 0, 0, 1};
        const auto value = NumbersOf(input, "DEFAULT", 3);
        if (!value) return;
        std::copy_n(value->begin(), std::min<std::size_t>(value->size(), 4), control.value.begin());
    }

    void readImports(const Json& header) {
        const auto imports = header.find("IMPORTED");
        if (imports == header.end()) return;
        if (imports->is_object()) {
            for (const auto& [name, import] : imports->items()) readImport(name, import);
        } else if (imports->is_array()) {
            for (const Json& import : *imports) readImport(TextOf(import, "NAME"), import);
        }
    }

    void readImport(const std::string& name, const Json& import) {
        if (!claim(name, "imported picture")) return;
        std::string relative = import.is_string() ? import.get<std::string>() : TextOf(import, "PATH");
        std::ranges::replace(relative, '\\', '/');  // as files from Windows have it
        const auto refuse = [&](const std::string& why) {
            findings.refuse(lineOf(name), fmt::format("imported picture \"{}\": {}", name, why), Kind::config);
        };
        if (TextOf(import, "TYPE") == "cube") return refuse("it is a cube map; replace it by a flat picture");
        if (relative.empty()) return refuse("it has no PATH");
        const std::filesystem::path path = folder / PathFromUtf8(relative);
        std::string ending = path.extension().string();
        std::ranges::transform(ending, ending.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
        if (std::ranges::find(kPictureEndings, ending) == std::end(kPictureEndings))
            return refuse(fmt::format("effects cannot read \"{}\"; save it as PNG", relative));
        std::error_code ignored;
        if (!std::filesystem::is_regular_file(path, ignored))
            return refuse(fmt::format("there is no file \"{}\"; put it there", relative));
        file->plan.images.push_back(
            {.name = shaderName(name), .source = PlannedImage::Source::file, .path = path, .fileName = name + ending});
    }

    void readPasses(const Json& header) {
        std::vector<Json> passes;
        if (const auto found = header.find("PASSES"); found != header.end() && found->is_array())
            passes.assign(found->begin(), found->end());
        if (passes.empty()) passes.push_back(Json::object());
        const std::map<std::string, Json> buffers = PersistentBuffers(header);
        for (const Json& pass : passes) {
            if (!pass.is_object()) {
                findings.refuse(lineOf("PASSES"), "a pass is no object", Kind::config);
                continue;
            }
            const std::string target = TextOf(pass, "TARGET");
            const std::string name = shaderName(target);
            PlannedPass planned{.index = static_cast<int>(file->plan.passes.size()), .target = name};
            file->plan.passes.push_back(planned);
            if (target.empty()) continue;
            if (!targets.contains(target) && !claim(target, "target")) continue;
            if (!targets.contains(target)) file->plan.targets.push_back({.name = name});
            targets.insert(target);
            const auto buffer = buffers.find(target);
            Json merged = buffer == buffers.end() ? Json::object() : buffer->second;
            merged.update(pass);
            PlannedTarget& drawn = *std::ranges::find(file->plan.targets, name, &PlannedTarget::name);
            drawn = {.name = name,
                     .width = sizeOf(merged, "WIDTH", target),
                     .height = sizeOf(merged, "HEIGHT", target),
                     .isPersistent = IsTrue(merged, "PERSISTENT") || buffer != buffers.end(),
                     .isFloat = IsTrue(merged, "FLOAT")};
        }
    }

    static std::map<std::string, Json> PersistentBuffers(const Json& header) {
        std::map<std::string, Json> buffers;
        const auto found = header.find("PERSISTENT_BUFFERS");
        if (found == header.end()) return buffers;
        if (found->is_object()) {
            for (const auto& [name, buffer] : found->items())
                buffers[name] = buffer.is_object() ? buffer : Json::object();
        } else if (found->is_array()) {
            for (const Json& name : *found) {
                if (name.is_string()) buffers[name.get<std::string>()] = Json::object();
            }
        }
        return buffers;
    }

    std::string sizeOf(const Json& pass, const char* key, const std::string& target) {
        const std::string text = TextOf(pass, key);
        if (text.empty()) return "";
        const SizeExpression size =
            ReadSizeExpression(text, [this](const std::string& name) { return sizeName(name); });
        if (!size.fault.empty())
            findings.refuse(lineOf(text), fmt::format("target \"{}\": {} \"{}\": {}", target, key, text, size.fault),
                            Kind::config);
        // The output's own size needs no rounding.
        return size.script == (std::string(key) == "WIDTH" ? "width" : "height") ? "" : size.script;
    }

    // The present value of an input in the script; of a color or point its first part.
    std::optional<std::string> sizeName(const std::string& name) const {
        if (name == "WIDTH") return "width";
        if (name == "HEIGHT") return "height";
        for (const PlannedControl& control : file->plan.controls) {
            if (control.name != name) continue;
            const std::string value = fmt::format("QL_getParamValue(controls.{})", name);
            switch (control.kind) {
                case PlannedControl::Kind::popup:
                    return fmt::format("choices.{}[{} - 1]", name, value);
                case PlannedControl::Kind::point:
                    if (control.isPixels) return value + "[0]";
                    return fmt::format("place('{}', [{}, 0], [{}, 1], size)[0]", name, NumberText(control.least[0]),
                                       NumberText(control.most[0]));
                case PlannedControl::Kind::color:
                    return value + "[0]";
                default:
                    return value;
            }
        }
        return std::nullopt;
    }

    // The picture that the effect is applied to: inputImage, else the first image.
    void chooseInput() {
        PlannedImage* chosen = nullptr;
        for (PlannedImage& image : file->plan.images) {
            if (image.source != PlannedImage::Source::layer) continue;
            if (!chosen || image.name == "inputImage") chosen = &image;
        }
        if (chosen) chosen->source = PlannedImage::Source::input;
        // A layer's control has the name of its uniform.
        for (const auto& [name, uniform] : file->renamed) {
            const auto isLayer = [&uniform = uniform](const PlannedImage& image) {
                return image.source == PlannedImage::Source::layer && image.name == uniform;
            };
            if (std::ranges::any_of(file->plan.images, isLayer))
                findings.refuse(lineOf(name),
                                fmt::format("image \"{}\": GLSL keeps this word for itself; rename it", name),
                                Kind::config);
        }
    }

    std::string_view json;
    std::filesystem::path folder;
    ImportFindings& findings;
    IsfFile* file = nullptr;
    int firstLine = 1;
    ControlLabels labels;
    std::set<std::string> names;
    std::set<std::string> targets;
};

}  // namespace

bool HasIsfHeader(std::string_view text) {
    return FindHeader(text).begin != std::string::npos;
}

IsfFile ReadIsf(std::string_view text, const std::filesystem::path& folder, const std::string& name,
                ImportFindings& findings) {
    IsfFile file{.plan = {.name = name}};
    const HeaderPlace place = FindHeader(text);
    if (place.begin == std::string::npos) {
        findings.refuse(1, "no JSON header; an ISF file begins with a comment that holds a JSON object", Kind::config);
        return file;
    }
    std::string_view comment = text.substr(place.begin, place.end - place.begin);
    const bool isClosed = comment.size() >= 4 && comment.ends_with("*/");
    if (!isClosed)
        findings.refuse(LineOf(text, place.begin), "the header's comment never ends; close it", Kind::config);
    comment.remove_prefix(2);
    if (isClosed) comment.remove_suffix(2);
    file.before = std::string(text.substr(0, place.begin));
    file.body = std::string(text.substr(place.end));
    file.bodyLine = LineOf(text, place.end);
    HeaderReader(comment, folder, findings).read(file, LineOf(text, place.begin));
    return file;
}

}  // namespace quillon::cli
