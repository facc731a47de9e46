#include "cli/diagnostics/Rules.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace quillon::cli {

namespace {

using enum Diagnostic::Severity;

constexpr Rule kRules[] = {
    {"config/closing-tag", 1, error, "write the same name in both tags"},
    {"config/doubled-key", 1, warning, "the first one counts"},
    {"config/flags", 1, warning, ""},
    {"config/identity", 1, error, ""},
    {"config/inside-root", 1, warning, "take that element away"},
    {"config/missing-file", 1, error, ""},
    {"config/missing-key", 1, warning, "numbers that are missing are 0, texts empty"},
    {"config/not-number", 1, warning, "write decimal digits only"},
    {"config/not-utf8", 1, error, "save the file as UTF-8"},
    {"config/not-xml", 1, error, ""},
    {"config/out-of-range", 1, warning, "write a number in that range"},
    {"config/sample-name", 1, warning, "give it another FXNAME, or a MATCH_NAME: projects find effects by that"},
    {"config/unknown-key", 1, warning, ""},
    {"package/leftover", 1, warning, "it is packed, move it out if the effect does not need it"},
    {"package/missing-file", 1, error, ""},
    {"package/missing-picture", 2, error, ""},
    {"package/unknown-rule", 2, warning, ""},
    {"package/unreadable", 1, error, ""},
    {"package/unreadable-picture", 2, error, "save it anew as PNG or JPEG"},
    {"render/control-without-effect", 4, warning, "use it in draw() or in a shader, or leave it out"},
    {"render/crash", 2, error, "look at what the script or a shader does there; other machines may crash too"},
    {"render/depths-differ", 3, warning, "look for numbers that hold at one depth only, such as 255 or a bit depth"},
    {"render/equal-input", 4, warning, "look at draw(): the last pass may not use what was made before"},
    {"render/failed", 3, error, ""},
    {"render/frame-order", 5, warning, "compute each frame from QL_getTime(), or silence this where it is meant"},
    {"render/instances-share", 4, warning, "keep nothing in variables of fx.js from frame to frame"},
    {"render/keeps-damage", 5, warning, "limit what is kept from frame to frame, as by clamp()"},
    {"render/memory", 5, warning, "release what frames make, or make it once"},
    {"render/never-ends", 2, error,
     "look for a loop in a shader that never ends, or a slow call in fx.js, or allow more with --time-limit"},
    {"render/not-a-number", 3, error,
     "look for a division by 0, and for the root, power or logarithm of a negative number"},
    {"render/one-color", 3, warning, "look at draw(), and at what its shaders read"},
    {"render/output-size", 3, error, ""},
    {"render/outside-range", 3, warning, "limit alpha to 0 to 1"},
    {"script/chance-in-draw", 2, warning, "compute it from QL_getTime() and a control for the seed"},
    {"script/coarse-slider", 2, warning, "set its decimal places with QL_setParamPrecision"},
    {"script/color-scale", 2, error, "give colors as 0 to 255 in setup(); scripts and shaders see 0 to 1"},
    {"script/dead-id", 2, error, "make it first, and keep its id in a variable"},
    {"script/default-outside-range", 2, error, "choose a default inside, or a wider range"},
    {"script/empty-range", 2, error, "give a minimum below the maximum"},
    {"script/ends-host", 2, error, "give it an id that the script has made"},
    {"script/entry-point-capitals", 2, error, ""},
    {"script/exception", 2, error, ""},
    {"script/growth", 5, error, "release it when the frame no longer needs it, or make it once"},
    {"script/implicit-global", 2, warning, "declare it with var, or look for a typing error"},
    {"script/late-control", 3, error, "declare all controls in setup()"},
    {"script/long-label", 2, warning, "shorten it"},
    {"script/never-returns", 2, error, "end the loop that runs here, or do less in one call"},
    {"script/no-effect", 2, warning, "leave the call out"},
    {"script/no-entry-point", 2, error, ""},
    {"script/no-output", 3, error, "end each frame with a pass into QL_getSequenceRT()"},
    {"script/not-created", 2, error,
     "ask for at least 1x1 pixels, no more than the driver takes, and 8, 16 or 32 bits"},
    {"script/not-es5", 2, error, ""},
    {"script/not-utf8", 1, error, "save the file as UTF-8"},
    {"script/open-group", 2, error, "give each GROUP_START its GROUP_END"},
    {"script/popup-entries", 2, error, "give two entries or more, as \"One|Two\""},
    {"script/popup-value", 2, error, "give it the number of an entry, from 1"},
    {"script/reads-own-target", 3, error, "draw into a second target and exchange the two"},
    {"script/release-in-use", 2, error, "release only what the script has made and no longer uses"},
    {"script/same-label", 2, warning, "give them labels that differ in their first 31 bytes"},
    {"script/same-name", 2, error, "give each control another name"},
    {"script/shadowed-function", 2, error, "give it another name"},
    {"script/syntax", 2, error, ""},
    {"script/undeclared-name", 2, error, "declare it with var, or look for a typing error"},
    {"script/unguarded-console", 2, warning, ""},
    {"script/uniform-type", 2, error, ""},
    {"script/unknown-kind", 2, error, "take a kind of QL_Type"},
    {"script/unknown-member", 2, error, "docs/script-api.md lists its members"},
    {"script/unknown-uniform", 2, warning, "take the name of a uniform of this shader"},
    {"script/unset-sampler", 3, error, "set it with QL_setShaderParamVal before the pass"},
    {"script/upside-down", 3, warning, "flip in one pass more or less, by the argument flip of QL_renderShader"},
    {"script/wrong-argument-count", 2, error, "docs/script-api.md says what each argument is"},
    {"script/wrong-kind", 2, error, ""},
    {"script/wrong-value", 2, error, ""},
    {"shader/character", 2, error, "write it as ASCII, or in a comment"},
    {"shader/compile", 2, error, ""},
    {"shader/extension-line", 2, warning, "do without: dFdx and dFdy need none"},
    {"shader/include-line", 2, error, "put the text itself there"},
    {"shader/late-extension", 2, error, "delete the line: dFdx and dFdy need none"},
    {"shader/late-size", 2, warning, "declare it before the samplers"},
    {"shader/link", 2, error, ""},
    {"shader/lod-read", 2, warning, "use texture2D"},
    {"shader/loop-bound", 2, warning, "end at a constant, and break out of the loop earlier"},
    {"shader/main-not-wrapped", 2, error, "write \"void main()\", with only blanks between the words and the bracket"},
    {"shader/missing-file", 2, error, ""},
    {"shader/no-main", 2, error, "write void main() { gl_FragColor = ...; }"},
    {"shader/no-result", 2, error, "write gl_FragColor = ... in it"},
    {"shader/not-in-dialect", 2, warning, ""},
    {"shader/number-suffix", 2, warning, ""},
    {"shader/read-arguments", 2, error, "leave the third argument out"},
    {"shader/reserved-name", 2, warning, "choose another name"},
    {"shader/swizzled-twice", 2, warning, "leave the swizzle out"},
    {"shader/unclosed-comment", 2, error, "end it with */"},
    {"shader/undefined-function", 2, error, "write its body"},
    {"shader/unfed-uniform", 2, warning, ""},
    {"shader/unmatched-bracket", 2, error, ""},
    {"shader/unreached-read", 2, warning, ""},
    {"shader/varying", 2, error, "use gl_TexCoord[0].st, or a uniform"},
    {"shader/version-line", 2, error, "delete the line: shaders are GLSL 1.10"},
    {"shader/warning", 2, warning, ""},
    {"shader/wrong-main", 2, error, ""},
};
static_assert(std::ranges::is_sorted(kRules, {}, &Rule::name));

Diagnostic::Kind KindOf(std::string_view rule) {
    constexpr std::pair<std::string_view, Diagnostic::Kind> kPrefixes[] = {
        {"config/", Diagnostic::Kind::config}, {"package/", Diagnostic::Kind::package},
        {"render/", Diagnostic::Kind::render}, {"script/", Diagnostic::Kind::script},
        {"shader/", Diagnostic::Kind::shader},
    };
    for (const auto& [prefix, kind] : kPrefixes)
        if (rule.starts_with(prefix)) return kind;
    throw std::logic_error("internal error: a rule of no kind: " + std::string(rule));
}

}  // namespace

std::span<const Rule> Rules() {
    return kRules;
}

const Rule* FindRule(std::string_view name) {
    const auto found = std::ranges::lower_bound(kRules, name, {}, &Rule::name);
    return found != std::end(kRules) && found->name == name ? found : nullptr;
}

Diagnostic Found(std::string_view rule, std::string path, int line, int column, std::string text, std::string remedy) {
    const Rule* const row = FindRule(rule);
    if (!row) throw std::logic_error("internal error: no rule is named " + std::string(rule));
    return {.path = std::move(path),
            .line = line,
            .column = column,
            .severity = row->severity,
            .text = std::move(text),
            .remedy = remedy.empty() ? row->remedy : std::move(remedy),
            .kind = KindOf(rule),
            .rule = std::string(rule)};
}

}  // namespace quillon::cli
