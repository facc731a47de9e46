#include "cli/import/PastedSources.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/diagnostics/ToolError.h"
#include "cli/import/LenientJson.h"
#include "cli/import/SourceText.h"
#include "cli/import/Sources.h"

namespace quillon::cli {

namespace {

using Json = nlohmann::json;

constexpr int kChannels = 4;
const std::string kBuffers = "abcd";

// "Buffer A", "buffer-a", "bufferA" and "a" are the buffer "a"; nothing for other words.
std::string BufferNamed(std::string word) {
    std::ranges::transform(word, word.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
    if (word.starts_with("buf")) word = word.back();
    return word.size() == 1 && kBuffers.find(word[0]) != std::string::npos ? word : "";
}

// The shader object of a project, however it is wrapped up.
Json ShaderOf(const std::string& text) {
    Json root = Json::parse(StrictJson(text), nullptr, /*allow_exceptions=*/false);
    if (root.is_array() && !root.empty()) root = Json(root[0]);
    if (root.is_object() && root.contains("Shader")) root = Json(root["Shader"]);
    return root.is_object() && root.contains("renderpass") && root["renderpass"].is_array() ? root : Json();
}

class ProjectReader {
public:
    ProjectReader(const Json& projectShader, std::string projectFile)
        : shader(projectShader), file(std::move(projectFile)) {}

    PastedSources read() {
        if (const auto info = shader.find("info"); info != shader.end() && info->is_object()) {
            sources.about = TextOf(*info, "description").empty() ? TextOf(*info, "name") : TextOf(*info, "description");
            if (const std::string author = TextOf(*info, "username"); !author.empty()) sources.credit = "By " + author;
        }
        for (const Json& pass : shader["renderpass"]) {
            if (pass.is_object() && TextOf(pass, "type") == "buffer") rememberOutputs(pass);
        }
        for (const Json& pass : shader["renderpass"]) {
            if (pass.is_object()) readPass(pass);
        }
        std::ranges::stable_sort(sources.passes, {}, [](const PastedPass& pass) {
            return pass.name == "image" ? std::string("z") : pass.name;
        });
        return std::move(sources);
    }

private:
    void rememberOutputs(const Json& pass) {
        const std::string name = nameOf(pass);
        const auto outputs = pass.find("outputs");
        if (outputs == pass.end() || !outputs->is_array()) return;
        for (const Json& output : *outputs) {
            if (output.is_object()) buffers[TextOf(output, "id")] = name;
        }
    }

    // Passes that do not name a buffer take the letters in their order.
    std::string nameOf(const Json& pass) {
        const std::string name = BufferNamed(TextOf(pass, "name"));
        if (!name.empty()) return name;
        for (const char letter : kBuffers) {
            const std::string free(1, letter);
            const auto isIt = [&](const auto& entry) { return entry.second == free; };
            if (std::ranges::none_of(buffers, isIt)) return free;
        }
        return "d";
    }

    void readPass(const Json& pass) {
        const std::string type = TextOf(pass, "type");
        const std::string code = NormalizeSource(TextOf(pass, "code"));
        if (type == "common") {
            sources.common = code;
            sources.commonFile = file + " (common)";
            return;
        }
        if (type == "sound") {
            sources.warnings.push_back("its sound is left out; effects have none");
            return;
        }
        if (type != "image" && type != "buffer") {
            sources.faults.push_back(
                fmt::format("a pass of the type \"{}\"; effects have images and buffers only", type));
            return;
        }
        PastedPass read{.name = type == "image" ? "image" : nameOf(pass), .text = code};
        read.file = fmt::format("{} ({})", file, read.name == "image" ? "image" : "buffer " + read.name);
        const auto inputs = pass.find("inputs");
        if (inputs != pass.end() && inputs->is_array()) {
            for (int channel = 0; channel < kChannels; ++channel) read.channels[channel] = "none";
            for (const Json& input : *inputs) {
                if (input.is_object()) readInput(read, input);
            }
        }
        sources.passes.push_back(read);
    }

    void readInput(PastedPass& pass, const Json& input) {
        const int channel = static_cast<int>(std::clamp(NumberOf(input, "channel", 0), 0.0, kChannels - 1.0));
        const std::string kind = TextOf(input, "ctype").empty() ? TextOf(input, "type") : TextOf(input, "ctype");
        const std::string buffer = buffers.contains(TextOf(input, "id")) ? buffers[TextOf(input, "id")] : "";
        std::string& source = pass.channels[channel];
        if (kind == "buffer")
            source = buffer.empty() ? BufferNamed(TextOf(input, "src")) : buffer;
        else if (kind == "texture")
            source = "layer";
        else if (kind == "video" || kind == "webcam")
            source = "picture";
        else if (kind == "music" || kind == "musicstream" || kind == "mic")
            source = "music";
        else
            source = kind;
        const auto sampler = input.find("sampler");
        if (sampler == input.end() || !sampler->is_object() || kind == "keyboard" || source == "music") return;
        pass.readings[channel] = {.isTiled = TextOf(*sampler, "wrap") == "repeat",
                                  .isNearest = TextOf(*sampler, "filter") == "nearest"};
        const auto warn = [&](bool isLost, const char* what) {
            if (isLost) sources.warnings.push_back(fmt::format("{}: iChannel{} {}", pass.name, channel, what));
        };
        const bool isTexture = kind == "texture";
        warn(isTexture && TextOf(*sampler, "vflip") == "false", "asks for a picture upside down; turn the layer over");
        warn(TextOf(*sampler, "srgb") == "true", "asks for linear light; the picture's numbers come as they are");
    }

    const Json& shader;
    std::string file;
    PastedSources sources;
    std::map<std::string, std::string> buffers;  // by the id of their output
};

// What a channel can read, beside a picture file.
constexpr std::string_view kSources[] = {"a", "b", "c", "d", "picture", "layer", "self", "keyboard", "music", "none"};

// Lines that editors add: #iChannel0 "path", #iChannel0::WrapMode "Repeat" are blanked out, and
// #iUniform float x = 1.0 in { 0.0, 5.0 } becomes a comment of the kind that declares controls.
void TakeChannelLines(PastedPass& pass, const ImportRequest& request) {
    std::size_t begin = 0;
    while (begin < pass.text.size()) {
        const std::size_t end = std::min(pass.text.find('\n', begin), pass.text.size());
        std::string line = pass.text.substr(begin, end - begin);
        line.erase(0, line.find_first_not_of(" \t"));
        const std::size_t quote = line.find('"');
        if (const std::size_t mark = pass.text.find("#iUniform", begin); mark < end) {
            pass.text.replace(mark, 9, "//!      ");
        } else if (line.starts_with("#iChannel") && line.size() > 9 && line[9] >= '0' && line[9] < '0' + kChannels &&
                   quote != std::string::npos) {
            const int channel = line[9] - '0';
            std::string value = line.substr(quote + 1, line.find('"', quote + 1) - quote - 1);
            if (line.find("::") < quote) {
                ChannelReading& reading = pass.readings[channel];
                if (line.find("WrapMode") < quote) reading.isTiled = value == "Repeat" || value == "repeat";
                if (line.find("MagFilter") < quote) reading.isNearest = value == "Nearest" || value == "nearest";
                if (line.find("Type") < quote && value == "CubeMap") pass.channels[channel] = "cubemap";
            } else {
                if (value.starts_with("file://")) value.erase(0, 7);
                std::ranges::replace(value, '\\', '/');  // as files from Windows have it
                std::string source =
                    std::ranges::find(kSources, value) != std::end(kSources) ? value : BufferNamed(value);
                for (const auto& [buffer, path] : request.buffers) {
                    if (path.filename() == std::filesystem::path(value).filename()) source = buffer;
                }
                pass.channels[channel] = source.empty() ? "file:" + value : source;
            }
            std::fill(pass.text.begin() + static_cast<std::ptrdiff_t>(begin),
                      pass.text.begin() + static_cast<std::ptrdiff_t>(end), ' ');
        }
        begin = end + 1;
    }
}

// "image:0=a"
void ApplyChannel(PastedSources& sources, const std::string& option) {
    const std::size_t colon = option.find(':');
    const std::size_t equals = option.find('=');
    const auto wrong = [&](const std::string& why) {
        return WrongCommandLine("--channel " + option, why,
                                "write it as PASS:N=SOURCE, as in image:0=a or a:0=picture");
    };
    if (colon == std::string::npos || equals != colon + 2 || option[colon + 1] < '0' ||
        option[colon + 1] >= '0' + kChannels)
        throw wrong("it names no channel from 0 to 3");
    std::string name = option.substr(0, colon);
    if (const std::string buffer = BufferNamed(name); !buffer.empty()) name = buffer;
    std::string source = option.substr(equals + 1);
    if (const std::string buffer = BufferNamed(source); !buffer.empty()) source = buffer;
    if (std::ranges::find(kSources, source) == std::end(kSources)) throw wrong("its source is unknown");
    for (PastedPass& pass : sources.passes) {
        if (pass.name != name) continue;
        pass.channels[option[colon + 1] - '0'] = source;
        return;
    }
    throw wrong("there is no such pass");
}

}  // namespace

bool IsProject(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t\n");
    return first != std::string::npos && (text[first] == '{' || text[first] == '[') && !ShaderOf(text).is_null();
}

PastedSources ReadPastedSources(const ImportRequest& request, const std::string& text) {
    PastedSources sources;
    if (IsProject(text)) {
        const Json shader = ShaderOf(text);
        sources = ProjectReader(shader, request.from.generic_string()).read();
        const auto isImage = [](const PastedPass& pass) { return pass.name == "image"; };
        if (std::ranges::none_of(sources.passes, isImage)) sources.faults.push_back("it has no image pass");
    } else {
        for (const auto& [buffer, path] : request.buffers)
            sources.passes.push_back({.name = buffer, .text = ReadShaderSource(path), .file = path.generic_string()});
        sources.passes.push_back({.name = "image", .text = text, .file = request.from.generic_string()});
        if (!request.common.empty()) {
            sources.common = ReadShaderSource(request.common);
            sources.commonFile = request.common.generic_string();
        }
    }
    for (PastedPass& pass : sources.passes) TakeChannelLines(pass, request);
    for (const std::string& option : request.channels) ApplyChannel(sources, option);
    return sources;
}

}  // namespace quillon::cli
