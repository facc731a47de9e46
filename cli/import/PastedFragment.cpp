#include "cli/import/PastedFragment.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/import/BuiltIns.h"
#include "cli/import/GlslConditions.h"
#include "cli/import/GlslDialect.h"
#include "cli/import/GlslHelpers.h"
#include "cli/import/GlslOutline.h"
#include "cli/import/PastedControls.h"
#include "cli/import/PastedSources.h"
#include "cli/import/ShaderText.h"
#include "cli/import/SourceText.h"
#include "platform/Utf8Path.h"

namespace quillon::cli {

namespace {

constexpr int kChannels = 4;

std::string ChannelName(int channel) {
    return fmt::format("iChannel{}", channel);
}

std::string TargetName(const std::string& buffer) {
    return "buffer" + std::string(1, static_cast<char>(buffer[0] - 'a' + 'A'));
}

GlslTokens Read(const std::string& text) {
    GlslTokens tokens = ReadTokens(text, 1);
    SettleVersions(tokens);
    return tokens;
}

// `out` of mainImage's color becomes `inout`: short shaders read the color before they write it and count on 0.
bool OpenColor(GlslTokens& tokens) {
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].source != "mainImage" || tokens[i].isDirective) continue;
        const std::size_t open = NextSignificant(tokens, i + 1);
        const std::size_t close = ClosingBracket(tokens, open);
        for (std::size_t k = open; k < close; ++k) {
            if (tokens[k].source != "out") continue;
            tokens[k].source = tokens[k].text = "inout";
            return true;
        }
    }
    return false;
}

class Importer {
public:
    Importer(const ImportRequest& importRequest, const std::string& text, ImportedEffect& importedEffect)
        : request(importRequest), effect(importedEffect), sources(ReadPastedSources(importRequest, text)) {}

    void run() {
        EffectPlan& plan = effect.plan;
        plan = {.format = ShaderFormat::pasted, .name = request.name, .about = sources.about, .credit = sources.credit};
        ImportFindings whole(request.from.generic_string());
        for (const std::string& fault : sources.faults) whole.refuse(0, fault);
        for (const std::string& warning : sources.warnings) whole.warn(0, warning);
        plan.images.push_back({.name = "iChannel0", .source = PlannedImage::Source::input});
        for (PastedPass& pass : sources.passes) addPass(pass);
        for (const std::string& name : request.exposed) {
            if (!exposed.contains(name))
                whole.refuse(0, fmt::format("--expose {}: there is no line \"#define {} NUMBER\"", name, name));
        }
        for (const PlannedControl& control : declared.controls) plan.controls.push_back(control);
        for (const PlannedImage& layer : declared.layers) plan.images.push_back(layer);
        if (plan.uses("iMouse"))
            plan.controls.push_back({.name = "iMouse",
                                     .uniform = "iMouse",
                                     .label = declared.labels.take("Mouse"),
                                     .kind = PlannedControl::Kind::point,
                                     .most = {1, 1},
                                     .isMouse = true});
        const auto isRead = [&](const PlannedImage& image) {
            return std::ranges::any_of(plan.shaders, [&](const PlannedShader& shader) {
                return std::ranges::any_of(
                    shader.samplers, [&](const PlannedSampler& sampler) { return sampler.picture == image.name; });
            });
        };
        std::erase_if(plan.images, [&](const PlannedImage& image) { return !isRead(image); });
        effect.findings.insert(effect.findings.begin(), whole.all().begin(), whole.all().end());
    }

private:
    bool hasPass(const std::string& name) const {
        return std::ranges::any_of(sources.passes, [&](const PastedPass& pass) { return pass.name == name; });
    }

    // What a channel reads where nothing says it. Of several passes the image reads the buffers in their order; a
    // buffer that counts frames goes on from its own picture, others begin with the effect's.
    std::string sourceOf(const PastedPass& pass, int channel, const std::string& text, ImportFindings& findings) const {
        if (const auto said = pass.channels.find(channel); said != pass.channels.end()) {
            if (said->second == "self") return pass.name;
            return said->second;
        }
        std::vector<std::string> order;
        if (pass.name == "image") {
            for (const PastedPass& other : sources.passes) {
                if (other.name != "image") order.push_back(other.name);
            }
        } else if (text.find("iFrame") != std::string::npos) {
            order.push_back(pass.name);
        }
        order.push_back("picture");
        const std::string source = static_cast<std::size_t>(channel) < order.size() ? order[channel] : "layer";
        if (sources.passes.size() > 1)
            findings.warn(
                0, fmt::format("iChannel{}: the text does not say what it reads; here it is {}; another one: "
                               "--channel {}:{}=SOURCE",
                               channel, source.size() == 1 ? "buffer " + source : "the " + source, pass.name, channel));
        return source;
    }

    PlannedImage* image(const std::string& name) {
        const auto found = std::ranges::find(effect.plan.images, name, &PlannedImage::name);
        return found == effect.plan.images.end() ? nullptr : &*found;
    }

    // The image or target that a channel reads, made where it is new; empty for none.
    std::string pictureOf(const PastedPass& pass, int channel, const std::string& source, ImportFindings& findings) {
        if (source == "none" || source.empty()) return "";
        if (source.size() == 1) {
            if (hasPass(source)) return TargetName(source);
            findings.refuse(
                0, fmt::format("iChannel{} reads buffer {}, which is missing; give its text with --buffer-{}", channel,
                               source, source));
            return "";
        }
        if (source == "picture") return "iChannel0";
        PlannedImage planned{.name = ChannelName(channel == 0 ? kChannels : channel)};
        if (source == "keyboard" || source == "music") {
            const bool isMusic = source == "music";
            planned.name = source;
            planned.source = PlannedImage::Source::silence;
            planned.size = isMusic ? std::array<int, 2>{512, 2} : std::array<int, 2>{256, 3};
            planned.color = isMusic ? "vec4(gl_FragCoord.y < 1.0 ? 0.0 : 0.5)" : "vec4(0.0)";
            findings.warn(0, fmt::format("iChannel{}: effects have no {}; the shader reads {}", channel, source,
                                         isMusic ? "silence" : "a keyboard without a pressed key"));
        } else if (source.starts_with("file:")) {
            const std::filesystem::path path = request.from.parent_path() / PathFromUtf8(source.substr(5));
            std::error_code ignored;
            if (!std::filesystem::is_regular_file(path, ignored)) {
                findings.refuse(
                    0, fmt::format("iChannel{}: there is no file \"{}\"; put it there, or say what the channel "
                                   "reads with --channel {}:{}=SOURCE",
                                   channel, source.substr(5), pass.name, channel));
                return "";
            }
            planned.name = fmt::format("{}Channel{}", pass.name, channel);
            planned.source = PlannedImage::Source::file;
            planned.path = path;
            planned.fileName = planned.name + path.extension().string();
        } else if (source != "layer") {
            findings.refuse(0, fmt::format("iChannel{}: effects have nothing of the kind \"{}\"; read a flat picture",
                                           channel, source));
            return "";
        }
        if (!image(planned.name)) {
            if (planned.source == PlannedImage::Source::layer)
                planned.label = declared.labels.take(fmt::format("Channel {}", channel));
            effect.plan.images.push_back(planned);
        }
        return planned.name;
    }

    void expose(GlslTokens& tokens) {
        for (const std::string& name : request.exposed) {
            if (ExposeConstant(tokens, name, declared)) exposed.insert(name);
        }
    }

    void addPass(PastedPass& pass) {
        ImportFindings findings(pass.file);
        GlslTokens common = Read(sources.common);
        GlslTokens body = Read(pass.text);
        ImportFindings commonFindings(sources.commonFile);
        TakePastedControls(common, declared, commonFindings);
        TakePastedControls(body, declared, findings);
        expose(common);
        expose(body);
        if (FunctionsOf(body).contains("mainCubemap") || FunctionsOf(body).contains("mainSound"))
            findings.refuse(0, "mainCubemap and mainSound: effects draw flat pictures; give the text with mainImage");
        for (const GlslToken& token : body) {
            if (token.source == "iChannel" || (token.source.starts_with("iCh") && token.source.size() == 4))
                findings.refuse(token.line, token.source +
                                                ": write iChannel0 to iChannel3 for the channels, and "
                                                "iChannelResolution for their sizes");
        }
        if (!OpenColor(body) && !OpenColor(common)) findings.refuse(0, "no mainImage(): the text has nothing to draw");
        PlannedShader shader = write(pass, common, body, findings, commonFindings);
        const bool isImage = pass.name == "image";
        effect.plan.passes.push_back({.shader = effect.plan.shaders.size(),
                                      .index = static_cast<int>(effect.plan.passes.size()),
                                      .target = isImage ? "" : TargetName(pass.name)});
        if (!isImage) effect.plan.targets.push_back({.name = TargetName(pass.name), .isFloat = true});
        // A buffer that is read before it is drawn, in its own pass or an earlier one, is kept from frame to frame.
        drawn.push_back(isImage ? "" : TargetName(pass.name));
        effect.plan.shaders.push_back(shader);
        for (PlannedTarget& target : effect.plan.targets) {
            for (std::size_t i = 0; i < effect.plan.shaders.size(); ++i) {
                const auto last = std::ranges::find(drawn, target.name) - drawn.begin();
                const auto reads = [&](const PlannedSampler& sampler) { return sampler.picture == target.name; };
                if (static_cast<std::ptrdiff_t>(i) <= last &&
                    std::ranges::any_of(effect.plan.shaders[i].samplers, reads))
                    target.isPersistent = true;
            }
        }
        effect.findings.insert(effect.findings.end(), findings.all().begin(), findings.all().end());
        effect.findings.insert(effect.findings.end(), commonFindings.all().begin(), commonFindings.all().end());
    }

    PlannedShader write(const PastedPass& pass, GlslTokens& common, GlslTokens& body, ImportFindings& findings,
                        ImportFindings& commonFindings) {
        const bool isImage = pass.name == "image";
        PlannedShader shader{.name = isImage ? ShaderName(request.name) : TargetName(pass.name),
                             .origin = pass.file,
                             .common = sources.commonFile};
        std::set<std::string> words = WordsOf(body);
        const std::set<std::string> commonWords = WordsOf(common);
        words.insert(commonWords.begin(), commonWords.end());
        const std::string inner = UnusedName(words, "drawPicture");
        Rename(common, "main", inner);
        Rename(body, "main", inner);
        std::vector<Varying> varyings = TakeVaryings(common);
        for (const Varying& varying : TakeVaryings(body)) varyings.push_back(varying);

        DialectOptions options;
        for (int channel = 0; channel < kChannels; ++channel) options.pictures.insert(ChannelName(channel));
        for (const PlannedImage& layer : declared.layers) options.pictures.insert(layer.name);
        for (const auto& [name, type] : declared.uniforms) options.globals[name] = TypeNamed(type).value_or(GlslType{});
        for (const PlannedControl& control : declared.controls) {
            if (control.uniform != control.name) options.globals[control.name] = {GlslType::Base::integer};
        }
        for (const std::string& word : words) {
            if (const BuiltIn* builtIn = FindBuiltIn(word, ShaderFormat::pasted))
                options.globals[word] = *TypeNamed(builtIn->type);
        }
        for (const Varying& varying : varyings)
            options.globals[varying.name] = TypeNamed(varying.type).value_or(GlslType{});
        options.globals["iMouse"] = FloatOfSize(4);
        options.own = FunctionsOf(common);
        options.own.merge(FunctionsOf(body));
        DialectResult dialect = Translate(common, options, commonFindings);
        dialect.add(Translate(body, options, findings));
        QuoteMainInComments(common);
        QuoteMainInComments(body);

        ShaderText text;
        text.add(TakeLeadingComments(body));
        text.add(head(pass, words, dialect, shader, findings));
        for (const Varying& varying : varyings)
            text.add(fmt::format("{} {}{};\n", varying.type, varying.name, varying.array));
        text.add(common, /*isCommon=*/true);
        text.add(body);
        text.add(OwnMain(isImage, words, dialect, shader));
        shader.text = text.text();
        shader.originLines = text.origins();
        return shader;
    }

    std::string head(const PastedPass& pass, const std::set<std::string>& words, DialectResult& dialect,
                     PlannedShader& shader, ImportFindings& findings) {
        std::string text;
        const auto declare = [&](const std::string& type, const std::string& name) {
            text += fmt::format("uniform {} {};\n", type, name);
            shader.uniforms.insert(name);
        };
        for (const PlannedControl& control : declared.controls) {
            const std::string& type = declared.uniforms.at(control.uniform);
            if (!words.contains(control.name)) continue;
            declare(type, control.uniform);
            const bool isDefined = exposed.contains(control.name);
            if (control.uniform != control.name && !isDefined)
                text += fmt::format("#define {} int(floor({} + 0.5))\n", control.name, control.uniform);
        }
        for (const std::string& word : words) {
            if (const BuiltIn* builtIn = FindBuiltIn(word, ShaderFormat::pasted)) declare(builtIn->type, word);
        }
        if (words.contains("iMouse")) declare("vec4", "iMouse");
        if (words.contains("iChannelResolution")) {
            for (int channel = 0; channel < kChannels; ++channel) dialect.reads.sized.insert(ChannelName(channel));
        }
        const auto sampler = [&](const std::string& name, const std::string& picture, const ChannelReading& reading) {
            PlannedSampler planned{
                .uniform = name, .picture = picture, .isTiled = reading.isTiled, .isNearest = reading.isNearest};
            for (const PlannedSampler& other : shader.samplers) {
                if (other.picture == picture && !picture.empty() &&
                    ChannelReading{other.isTiled, other.isNearest} != reading)
                    findings.warn(0, fmt::format("{} and {} read one picture in two ways; both read it as {} asks",
                                                 other.uniform, name, name));
            }
            if (dialect.usedPictures.contains(name)) text += fmt::format("uniform sampler2D {};\n", name);
            if (dialect.reads.sized.contains(name)) {
                planned.size = dialect.reads.sizes.at(name);
                declare("vec2", planned.size);
            }
            shader.samplers.push_back(planned);
        };
        const std::string whole = sources.common + pass.text;
        for (int channel = 0; channel < kChannels; ++channel) {
            const std::string name = ChannelName(channel);
            if (!dialect.usedPictures.contains(name) && !dialect.reads.sized.contains(name)) continue;
            const bool isRead = dialect.usedPictures.contains(name) || pass.channels.contains(channel);
            const std::string source = isRead ? sourceOf(pass, channel, whole, findings) : "none";
            const auto reading = pass.readings.find(channel);
            sampler(name, pictureOf(pass, channel, source, findings),
                    reading == pass.readings.end() ? ChannelReading{} : reading->second);
        }
        for (const PlannedImage& layer : declared.layers) {
            if (dialect.usedPictures.contains(layer.name)) sampler(layer.name, layer.name, {});
        }
        if (words.contains("iChannelResolution")) text += "vec3 iChannelResolution[4];\n";
        if (words.contains("iChannelTime")) text += "float iChannelTime[4];\n";
        if (!dialect.usedPictures.empty()) text += dialect.reads.definitions("gl_TexCoord[0].st");
        text += HelpersFor(dialect.calls, dialect.own);
        return text.empty() ? text : text + "\n";
    }

    static std::string OwnMain(bool isImage, const std::set<std::string>& words, const DialectResult& dialect,
                               const PlannedShader& shader) {
        std::string text = "\nvoid main()\n{\n";
        if (words.contains("iChannelResolution")) {
            for (const PlannedSampler& sampler : shader.samplers) {
                if (sampler.uniform.starts_with("iChannel") && !sampler.size.empty())
                    text += fmt::format("    iChannelResolution[{}] = vec3({}, {});\n", sampler.uniform.back(),
                                        sampler.size, sampler.picture.empty() ? "0.0" : "1.0");
            }
        }
        if (words.contains("iChannelTime")) {
            for (int channel = 0; channel < kChannels; ++channel)
                text += fmt::format("    iChannelTime[{}] = 0.0;\n", channel);
        }
        for (const std::string& starter : dialect.starters) text += fmt::format("    {}();\n", starter);
        text += "    vec4 color = vec4(0.0);\n    mainImage(color, gl_FragCoord.xy);\n";
        return text + (isImage ? "    gl_FragColor = vec4(color.rgb, 1.0);\n}\n" : "    gl_FragColor = color;\n}\n");
    }

    const ImportRequest& request;
    ImportedEffect& effect;
    PastedSources sources;
    PastedControls declared;
    std::set<std::string> exposed;
    std::vector<std::string> drawn;  // the target of each pass so far; empty for the frame
};

}  // namespace

bool IsPasted(const std::string& text) {
    if (IsProject(text)) return true;
    const std::set<std::string> words = WordsOf(ReadTokens(text, 1));
    return words.contains("mainImage") || words.contains("mainCubemap") || words.contains("mainSound");
}

void ImportPasted(const ImportRequest& request, const std::string& text, ImportedEffect& effect) {
    Importer(request, text, effect).run();
}

}  // namespace quillon::cli
