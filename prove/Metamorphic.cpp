// Planted once: a pass over the text of shaders that drops line ends with a carriage return.

#include <random>
#include <regex>

#include "Effects.h"
#include "Ground.h"
#include "packer/EffectFolder.h"

namespace quillon::prove {

namespace {

using Rewrite = std::string (*)(std::string text);

// Before the last closing brace, which is that of main() in each sample, and after the brace that opens it.
std::string AroundBody(std::string text, const std::string& open, const std::string& close) {
    const std::size_t main = text.find("void main()");
    Require(main != std::string::npos, "a sample's shader has no main() of this form");
    text.insert(text.rfind('}'), close);
    return text.insert(text.find('{', main) + 1, open);
}

std::string EachLine(const std::string& text, const std::string& ending) {
    std::string result;
    for (const char c : text) result += c == '\n' ? ending : std::string(1, c);
    return result;
}

// None of them changes what a shader means.
constexpr Rewrite kRewrites[] = {
    [](std::string text) { return EachLine(text, "\r\n"); },
    [](std::string text) { return EachLine(text, "  // as before\n\n"); },
    [](std::string text) { return "/* a comment\n   of two lines */\n" + text; },
    [](std::string text) {
        return AroundBody(text, "\n  for (int onlyTurn = 0; onlyTurn < 1; ++onlyTurn) {\n", "\n}\n");
    },
    [](std::string text) { return AroundBody(text, "\n  if (1.0 < 0.0) { gl_FragColor = vec4(9.0); return; }\n", ""); },
    [](std::string text) { return AroundBody(text, " {", " }"); },
    [](std::string text) {
        for (const char* const name : {"mix", "clamp", "floor", "dot", "max"}) {
            const std::string own = std::string("own_") + name;
            text = std::regex_replace(text, std::regex(std::string("\\b") + name + "\\("), own + "(");
            text = "#define " + own + " " + name + "\n" + text;
        }
        return text;
    },
    [](std::string text) { return text + "\n\n#if 0\nnothing of this is read\n#endif\n"; },
};

}  // namespace

std::string Metamorphic(bool isLong) {
    const LoadedEffect loaded(ThreePasses());
    const std::filesystem::path samples = test::SourceFolder() / "effects";
    std::vector<std::string> effects = {"glow", "grain", "halftone", "lens", "mosaic"};
    if (isLong) {
        effects.clear();
        for (const auto& entry : std::filesystem::directory_iterator(samples))
            if (entry.is_directory()) effects.push_back(entry.path().filename().string());
    }
    const int variants = isLong ? 63 : 20;  // 1,008 rewritten pictures of the 16 samples
    int pictures = 0;
    for (const std::string& effect : effects) {
        const auto original = ReadEffectFiles(ListEffectFolder(samples / effect));
        test::Bytes wanted;
        for (int variant = 0; variant <= variants; ++variant) {
            std::mt19937 random(static_cast<unsigned>(variant));
            std::string chosen;
            test::Files files;
            for (const PackageFile& file : original) {
                std::string text(reinterpret_cast<const char*>(file.bytes.data()), file.bytes.size());
                for (std::size_t i = 0; i < std::size(kRewrites) && file.name.ends_with(".frag"); ++i) {
                    // One rewrite each first, then any of them together.
                    const auto number = static_cast<std::size_t>(variant);
                    const bool isChosen = number <= std::size(kRewrites) ? number == i + 1 : random() % 2 == 0;
                    if (!isChosen || variant == 0) continue;
                    text = kRewrites[i](text);
                    chosen += " " + std::to_string(i) + " in " + file.name;
                }
                files.emplace_back(file.name, text);
            }
            const std::string what = effect + ", rewrites" + chosen;
            NowAt(what);
            const test::TestEffect carrier(files);
            host::HostSession session(host::EffectModule(loaded.effect().entry(), carrier.module()), Unrecorded());
            session.start();
            const test::Bytes pixels =
                RenderedBytes(session.apply(), {WorldOf(session, 32, 18, 32, 6)}, host::Route::smart);
            if (variant == 0) wanted = pixels;
            Require(pixels == wanted, "another picture: " + what);
            ++pictures;
        }
    }
    return std::to_string(pictures) + " pictures of " + std::to_string(effects.size()) + " effects";
}

}  // namespace quillon::prove
