#include "cli/import/IsfHeader.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <set>

#include "cli/glsl/GlslTokens.h"
#include "cli/import/BuiltIns.h"
#include "cli/import/ControlNames.h"
#include "cli/import/IsfInputs.h"
#include "cli/import/LenientJson.h"
#include "cli/import/SizeExpression.h"
#include "cli/import/SourceText.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;
using Kind = Diagnostic::Kind;

constexpr std::size_t kLongestCategory = 31;  // bytes

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
        if (FindBuiltIn(name, ShaderFormat::isf) || name.starts_with("isf_")) {
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
        const std::string label = TextOf(input, "LABEL").empty() ? name : TextOf(input, "LABEL");
        PlannedControl control{.name = name, .uniform = shaderName(name), .label = ""};
        const auto warn = [&](const std::string& words) { findings.warn(lineOf(name), words, Kind::config); };
        if (const char* const uniformType = ReadIsfControl(type, input, control, warn)) {
            control.label = labels.take(label);
            file->uniforms[control.uniform] = uniformType;
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
