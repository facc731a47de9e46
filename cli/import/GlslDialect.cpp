#include "cli/import/GlslDialect.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "cli/import/ControlNames.h"
#include "cli/import/GlslOutline.h"
#include "cli/import/GlslWalk.h"

namespace quillon::cli {

namespace {

struct Refusal {
    const char* words;  // separated by blanks; one that ends in a star means all that begin with it
    const char* why;
};
constexpr Refusal kRefusals[] = {
    {"uint uvec2 uvec3 uvec4 floatBitsToInt floatBitsToUint intBitsToFloat uintBitsToFloat",
     "the dialect has no unsigned numbers and no bits of floats; compute the hash with fract() and sin()"},
    {"packUnorm* packSnorm* packHalf* unpackUnorm* unpackSnorm* unpackHalf* bitfield* bitCount findLSB findMSB",
     "the dialect cannot pack bits; keep the values in separate channels"},
    {"mat2x3 mat2x4 mat3x2 mat3x4 mat4x2 mat4x3", "only square matrices exist; use the vectors one by one"},
    {"sampler3D texture3D sampler2DArray sampler1D texture1D isampler2D usampler2D sampler2DShadow",
     "only flat pictures can be read; use a sampler2D"},
    {"samplerCube textureCube textureCubeLod", "there are no cube maps; read a flat picture by longitude and latitude"},
    {"gl_FragDepth gl_FragData imageLoad imageStore", "a shader has one color as its result; use gl_FragColor"},
    {"double dvec2 dvec3 dvec4", "there are no doubles; use float"},
};

bool Names(std::string_view list, std::string_view word) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(' '), list.size());
        const std::string_view name = list.substr(0, end);
        list.remove_prefix(std::min(end + 1, list.size()));
        if (name == word || (name.ends_with('*') && word.starts_with(name.substr(0, name.size() - 1)))) return true;
    }
    return false;
}

// Derivatives and reads at a level need no extension line there.
bool IsNeedlessExtension(const std::string& name) {
    return name.find("derivatives") != std::string::npos || name.find("texture_lod") != std::string::npos ||
           name.find("texture_rectangle") != std::string::npos || name == "all";
}

class Translator {
public:
    Translator(GlslTokens& shaderTokens, const DialectOptions& dialectOptions, ImportFindings& importFindings)
        : tokens(shaderTokens), options(dialectOptions), findings(importFindings) {}

    DialectResult translate() {
        DialectResult result;
        result.own = FunctionsOf(tokens);
        result.own.insert(options.own.begin(), options.own.end());
        dropExtensions();
        renameReserved();
        takeSuffixes();
        refuse(result.own);
        result.reads = RewriteReads(tokens, options.pictures, result.own, findings);
        GlslWalk walk(tokens, options.globals, findings);
        walk.run();
        result.starters = walk.starters();
        result.calls = calls();
        result.calls.insert(walk.helpers().begin(), walk.helpers().end());
        for (const GlslToken& token : tokens) {
            if (token.kind == GlslToken::Kind::word && options.pictures.contains(token.source) && !token.text.empty())
                result.usedPictures.insert(token.source);
        }
        result.usedPictures.insert(result.reads.sized.begin(), result.reads.sized.end());
        return result;
    }

private:
    void dropExtensions() {
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            if (!tokens[i].isDirective || tokens[i].source != "extension") continue;
            const std::size_t name = NextSignificant(tokens, i + 1);
            if (name < tokens.size() && !IsNeedlessExtension(tokens[name].source))
                findings.refuse(tokens[i].line, fmt::format("extension {}: not every driver has it; do without it",
                                                            tokens[name].source));
            std::size_t begin = i;
            while (begin > 0 && tokens[begin].source != "#") --begin;
            for (std::size_t k = begin; k < tokens.size() && tokens[k].isDirective; ++k) tokens[k].text.clear();
        }
    }

    // A word of the language that this file uses as a name.
    void renameReserved() {
        std::set<std::string> words = WordsOf(tokens);
        for (const std::string& word : WordsOf(tokens)) {
            if (!IsReservedWord(word) || word == "default") continue;
            const std::string name = UnusedName(words, word + "Value");
            words.insert(name);
            Rename(tokens, word, name);
        }
    }

    // "1.0f" and "1.0lf" are "1.0"; "1u" is unsigned.
    void takeSuffixes() {
        for (GlslToken& token : tokens) {
            if (token.kind != GlslToken::Kind::number || token.source.starts_with("0x") ||
                token.source.starts_with("0X"))
                continue;
            const std::size_t end = token.source.find_last_not_of("fFlL") + 1;
            if (end != token.source.size()) {
                token.source.resize(end);
                if (token.source.find_first_of(".eE") == std::string::npos) token.source += ".0";
                token.text = token.source;
            }
            if (token.source.ends_with('u') || token.source.ends_with('U'))
                findings.refuse(token.line, fmt::format("{}: {}", token.source, kRefusals[0].why));
        }
    }

    void refuse(const std::set<std::string>& own) {
        bool isField = false;
        for (const GlslToken& token : tokens) {
            if (token.kind == GlslToken::Kind::word && !isField && !own.contains(token.source)) {
                for (const Refusal& refusal : kRefusals) {
                    if (Names(refusal.words, token.source))
                        findings.refuse(token.line, fmt::format("{}: {}", token.source, refusal.why));
                }
                if (token.source == "isnan" || token.source == "isinf")
                    findings.warn(token.line, token.source + ": compilers may leave this question out");
            }
            if (token.isSignificant()) isField = token.source == ".";
        }
    }

    // Names that a bracket follows.
    std::set<std::string> calls() const {
        std::set<std::string> names;
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            if (tokens[i].kind != GlslToken::Kind::word || tokens[i].text.empty()) continue;
            const std::size_t next = NextSignificant(tokens, i + 1);
            if (next < tokens.size() && tokens[next].source == "(") names.insert(tokens[i].source);
        }
        return names;
    }

    GlslTokens& tokens;
    const DialectOptions& options;
    ImportFindings& findings;
};

}  // namespace

void DialectResult::add(const DialectResult& other) {
    reads.sized.insert(other.reads.sized.begin(), other.reads.sized.end());
    reads.used.insert(other.reads.used.begin(), other.reads.used.end());
    usedPictures.insert(other.usedPictures.begin(), other.usedPictures.end());
    calls.insert(other.calls.begin(), other.calls.end());
    own.insert(other.own.begin(), other.own.end());
    starters.insert(starters.end(), other.starters.begin(), other.starters.end());
}

DialectResult Translate(GlslTokens& tokens, const DialectOptions& options, ImportFindings& findings) {
    return Translator(tokens, options, findings).translate();
}

}  // namespace quillon::cli
