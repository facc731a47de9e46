#include "gpu/FragmentRewriting.h"

namespace quillon {

namespace {

constexpr std::string_view kMainWrapper = "void main() { repl_main(); gl_FragColor = gl_FragColor.argb; }";

// A word to rename wherever tokenFinder accepts it, and the line of GLSL that goes in front of the text when it was.
struct Renaming {
    std::string_view word;
    std::string_view replacement;
    TokenMode mode;
    std::string_view addedLine;  // empty: none
};

constexpr Renaming kTexture2D = {"texture2D", "repl_texture2D", TokenMode::call,
                                 "vec4 repl_texture2D(sampler2D a,vec2 b) { return texture2D(a,b).SWIZZLE; }"};

constexpr Renaming kTexture2DLod = {
    "texture2DLod", "repl_texture2DLod", TokenMode::call,
    "vec4 repl_texture2DLod(sampler2D a,vec2 b,float c) { return texture2DLod(a,b,c).SWIZZLE; }"};

// A direction looked up in a picture by longitude and latitude. The two constants fall short of pi and two pi on
// purpose; existing effects depend on the last digits.
constexpr Renaming kTextureCube = {
    "textureCube", "repl_textureCube", TokenMode::call,
    "vec4 repl_textureCube(sampler2D a,vec3 b) { vec2 uv = vec2( (atan( b.x, b.z ) + 3.141526f)/6.283052f, "
    "acos(b.y)/3.141526f ); return texture2D(a,uv).SWIZZLE; }"};

constexpr Renaming kSamplerCube = {"samplerCube", "sampler2D", TokenMode::type, {}};

// What the C library's isspace says in its default locale; bytes from 0x80 up are never white space.
constexpr bool IsSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

constexpr bool MayStandBefore(char c, TokenMode mode) {
    if (IsSpace(c)) return true;
    return mode != TokenMode::definition && std::string_view("(+-/*=").find(c) != std::string_view::npos;
}

bool MayStandAfter(std::string_view text, std::size_t wordEnd, TokenMode mode) {
    const auto byteAt = [text](std::size_t position) { return position < text.size() ? text[position] : '\0'; };
    std::size_t next = wordEnd;
    while (IsSpace(byteAt(next))) ++next;
    if (mode != TokenMode::type) return byteAt(next) == '(';
    return byteAt(next) == '.' || IsSpace(byteAt(wordEnd));
}

// Whether a line went in front of the text.
bool Rename(std::string& text, const Renaming& renaming) {
    std::string renamed;
    std::size_t copied = 0;
    bool modified = false;
    for (std::size_t hit = tokenFinder(text, renaming.word, renaming.mode, 1); hit != std::string::npos;
         hit = tokenFinder(text, renaming.word, renaming.mode, copied)) {
        renamed.append(text, copied, hit - copied).append(renaming.replacement);
        copied = hit + renaming.word.size();
        modified = true;
    }
    if (!modified) return false;
    renamed.append(text, copied);

    text = renaming.addedLine;
    if (!renaming.addedLine.empty()) text += '\n';
    text += renamed;
    return !renaming.addedLine.empty();
}

}  // namespace

std::size_t tokenFinder(std::string_view text, std::string_view word, TokenMode mode, std::size_t start) {
    for (std::size_t hit = text.find(word, start); hit != std::string_view::npos; hit = text.find(word, hit + 1)) {
        if (hit == 0 || !MayStandBefore(text[hit - 1], mode)) continue;
        if (MayStandAfter(text, hit + word.size(), mode)) return hit;
    }
    return std::string_view::npos;
}

void rewriteMain(std::string& text) {
    constexpr std::string_view kWord = "main";
    const std::size_t hit = tokenFinder(text, kWord, TokenMode::definition, 0);
    if (hit == std::string::npos) return;
    text.replace(hit, kWord.size(), "repl_main");
    text += '\n';
    text += kMainWrapper;
}

bool rewriteTexture2D(std::string& text) {
    return Rename(text, kTexture2D);
}

bool rewriteTexture2DLod(std::string& text) {
    return Rename(text, kTexture2DLod);
}

bool rewriteTextureCube(std::string& text) {
    const bool added = Rename(text, kTextureCube);
    // Its own hits decide about the sampler's type, whether or not a lookup was renamed.
    Rename(text, kSamplerCube);
    return added;
}

RewrittenFragment RewriteFragment(std::string_view source) {
    RewrittenFragment result{std::string(source)};
    rewriteMain(result.text);
    for (auto* pass : {rewriteTexture2D, rewriteTexture2DLod, rewriteTextureCube}) {
        if (pass(result.text)) ++result.addedLines;
    }
    return result;
}

}  // namespace quillon
