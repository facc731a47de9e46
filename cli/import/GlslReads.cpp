#include "cli/import/GlslReads.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <vector>

namespace quillon::cli {

namespace {

// What a call becomes. `reader` in a text is the function that all reads go through.
enum class Change { none, rename, size, insertSize, wholeSize, dividePlace };

struct Read {
    const char* name;
    Change change;
    const char* becomes;     // the function's new name; empty: the reader
    std::size_t arguments;   // kept of the call; what follows them goes
    bool isOfLevel = false;  // the first that goes is a mipmap's level
};

constexpr Read kReads[] = {
    {"IMG_NORM_PIXEL", Change::none, "IMG_NORM_PIXEL", 2},
    {"IMG_THIS_PIXEL", Change::none, "IMG_THIS_PIXEL", 1},
    {"IMG_THIS_NORM_PIXEL", Change::none, "IMG_THIS_NORM_PIXEL", 1},
    {"IMG_NORM_THIS_PIXEL", Change::none, "IMG_NORM_THIS_PIXEL", 1},
    {"IMG_PIXEL", Change::insertSize, "IMG_PIXEL", 2},
    {"IMG_SIZE", Change::size, "", 1},
    {"texture", Change::rename, "", 2},
    {"texture2D", Change::rename, "", 2},
    {"textureLod", Change::rename, "", 2, true},
    {"texture2DLod", Change::rename, "", 2, true},
    {"texture2DLodEXT", Change::rename, "", 2, true},
    {"textureGrad", Change::rename, "", 2},
    {"texture2DGradEXT", Change::rename, "", 2},
    {"textureProj", Change::rename, "readProjected", 2},
    {"texture2DProj", Change::rename, "readProjected", 2},
    {"texelFetch", Change::insertSize, "readTexel", 2, true},
    {"textureSize", Change::wholeSize, "", 1, true},
    {"texture2DRect", Change::dividePlace, "", 2},
};

struct Definition {
    const char* name;
    const char* text;  // READER, PLACE: the reading function, the fragment's own place
};
constexpr Definition kDefinitions[] = {
    {"IMG_NORM_PIXEL", "#define IMG_NORM_PIXEL(image, place) READER(image, (place).xy)\n"},
    {"IMG_PIXEL", "#define IMG_PIXEL(image, size, place) READER(image, (place).xy / (size))\n"},
    {"IMG_THIS_PIXEL", "#define IMG_THIS_PIXEL(image) READER(image, PLACE)\n"},
    {"IMG_THIS_NORM_PIXEL", "#define IMG_THIS_NORM_PIXEL(image) READER(image, PLACE)\n"},
    {"IMG_NORM_THIS_PIXEL", "#define IMG_NORM_THIS_PIXEL(image) READER(image, PLACE)\n"},
    {"readProjected",
     "vec4 readProjected(sampler2D image, vec3 place) { return READER(image, place.xy / place.z); }\n"
     "vec4 readProjected(sampler2D image, vec4 place) { return READER(image, place.xy / place.w); }\n"},
    {"readTexel",
     "vec4 readTexel(sampler2D image, vec2 size, ivec2 texel)\n{\n"
     "    vec2 place = (vec2(texel) + 0.5) / size;\n"
     "    bool isInside = all(greaterThan(place, vec2(0.0))) && all(lessThan(place, vec2(1.0)));\n"
     "    return isInside ? READER(image, place) : vec4(0.0);\n}\n"},
};

void ReplaceAll(std::string& text, const std::string& word, const std::string& by) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + by.size()))
        text.replace(at, word.size(), by);
}

struct Call {
    std::size_t open = 0;
    std::size_t close = 0;
    std::vector<std::size_t> commas{};  // between its arguments
};

std::optional<Call> CallAt(const GlslTokens& tokens, std::size_t name) {
    Call call{.open = NextSignificant(tokens, name + 1)};
    if (call.open >= tokens.size() || tokens[call.open].source != "(") return std::nullopt;
    call.close = ClosingBracket(tokens, call.open);
    if (call.close >= tokens.size()) return std::nullopt;
    int depth = 0;
    for (std::size_t i = call.open; i < call.close; ++i) {
        const std::string& source = tokens[i].source;
        if (source == "(" || source == "[") ++depth;
        if (source == ")" || source == "]") --depth;
        if (source == "," && depth == 1) call.commas.push_back(i);
    }
    return call;
}

void TakeOut(GlslTokens& tokens, std::size_t begin, std::size_t end) {
    for (std::size_t i = begin; i < end; ++i) {
        if (tokens[i].source != "\n") tokens[i].text.clear();
    }
}

// #define lines that give a picture another name.
std::map<std::string, std::string> AliasesOf(const GlslTokens& tokens, const std::set<std::string>& pictures) {
    std::map<std::string, std::string> aliases;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (!tokens[i].isDirective || tokens[i].source != "define") continue;
        const std::size_t name = NextSignificant(tokens, i + 1);
        const std::size_t body = NextSignificant(tokens, name + 1);
        if (body >= tokens.size() || !tokens[body].isDirective || !pictures.contains(tokens[body].source)) continue;
        const std::size_t next = NextSignificant(tokens, body + 1);
        if (next >= tokens.size() || !tokens[next].isDirective || tokens[next].source == "#")
            aliases[tokens[name].source] = tokens[body].source;
    }
    return aliases;
}

class Rewriter {
public:
    Rewriter(GlslTokens& shaderTokens, GlslReads& shaderReads, ImportFindings& importFindings)
        : tokens(shaderTokens), reads(shaderReads), findings(importFindings) {}

    void rewrite(std::size_t name, const Read& read) {
        const auto call = CallAt(tokens, name);
        if (!call) return;
        const std::size_t first = NextSignificant(tokens, call->open + 1);
        std::string picture = tokens[first].source;
        if (const auto alias = reads.aliases.find(picture); alias != reads.aliases.end()) picture = alias->second;
        if (call->commas.size() >= read.arguments) {
            const std::size_t cut = call->commas[read.arguments - 1];
            if (read.isOfLevel) warnOfLevel(cut, call->close, tokens[name]);
            TakeOut(tokens, cut, call->close);
        }
        if (read.change == Change::none || read.change == Change::rename) {
            if (read.change == Change::rename) tokens[name].text = *read.becomes ? read.becomes : reads.reader;
            use(read);
            return;
        }
        const std::string size = sizeOf(picture, name);
        if (size.empty()) {
            findings.refuse(
                tokens[name].line,
                fmt::format("{}({}, ...): it needs the size of the picture, and \"{}\" is the name of none; "
                            "write the picture's own name there",
                            read.name, picture, picture));
            return;
        }
        use(read);
        if (read.change == Change::insertSize) {
            tokens[name].text = read.becomes;
            tokens[first].text += ", " + size;
        } else if (read.change == Change::dividePlace && !call->commas.empty()) {
            tokens[name].text = reads.reader;
            tokens[call->commas[0]].text = ", (";
            tokens[call->close].text = fmt::format(") / {})", size);
        } else {
            TakeOut(tokens, name, call->close + 1);
            tokens[name].text = read.change == Change::wholeSize ? fmt::format("ivec2({})", size) : size;
        }
    }

private:
    // The uniform of a picture's size. A macro's parameter stands for any picture that the text names: pasted together
    // with "Size" it gives that picture's.
    std::string sizeOf(const std::string& picture, std::size_t place) {
        if (const auto size = reads.sizes.find(picture); size != reads.sizes.end()) {
            reads.sized.insert(picture);
            return size->second;
        }
        if (!tokens[place].isDirective) return "";
        for (const GlslToken& token : tokens) {
            if (const auto size = reads.sizes.find(token.source); size != reads.sizes.end()) {
                if (size->second != size->first + "Size") return "";
                reads.sized.insert(size->first);
            }
        }
        return picture + "##Size";
    }

    void use(const Read& read) {
        if (*read.becomes) reads.used.insert(read.becomes);
    }

    void warnOfLevel(std::size_t comma, std::size_t close, const GlslToken& name) {
        const std::size_t level = NextSignificant(tokens, comma + 1);
        const bool isZero = NextSignificant(tokens, level + 1) == close &&
                            tokens[level].source.find_first_not_of("0.f") == std::string::npos;
        if (!isZero)
            findings.warn(name.line, name.source + ": pictures have no smaller levels; it reads the picture as it is");
    }

    GlslTokens& tokens;
    GlslReads& reads;
    ImportFindings& findings;
};

}  // namespace

std::string GlslReads::definitions(const std::string& place) const {
    std::string text = "vec4 READER(sampler2D image, vec2 place) { return texture2D(image, place); }\n";
    for (const Definition& definition : kDefinitions) {
        if (used.contains(definition.name)) text += definition.text;
    }
    ReplaceAll(text, "READER", reader);
    ReplaceAll(text, "PLACE", place);
    return text;
}

GlslReads RewriteReads(GlslTokens& tokens, const std::set<std::string>& pictures, const std::set<std::string>& own,
                       ImportFindings& findings) {
    const std::set<std::string> words = WordsOf(tokens);
    GlslReads reads{.reader = UnusedName(words, "readPicture")};
    for (const std::string& picture : pictures) reads.sizes[picture] = UnusedName(words, picture + "Size");
    reads.aliases = AliasesOf(tokens, pictures);
    Rewriter rewriter(tokens, reads, findings);
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        if (tokens[i].kind != GlslToken::Kind::word || tokens[i].text.empty()) continue;
        const std::string& word = tokens[i].source;
        if (own.contains(word)) continue;
        for (const Read& read : kReads) {
            if (word == read.name) rewriter.rewrite(i, read);
        }
        // Names that ISF gives to what belongs to a picture, without having said so.
        for (const auto& [picture, size] : reads.sizes) {
            if (!word.starts_with("_" + picture + "_")) continue;
            const std::string part = word.substr(picture.size() + 2);
            if (part == "imgSize")
                tokens[i].text = size;
            else if (part == "imgRect")
                tokens[i].text = fmt::format("vec4(0.0, 0.0, {})", size);
            else if (part == "flip")
                tokens[i].text = "false";
            if (part == "imgSize" || part == "imgRect") reads.sized.insert(picture);
        }
    }
    return reads;
}

}  // namespace quillon::cli
