#include "cli/import/VertexStage.h"

#include <fmt/format.h>

namespace quillon::cli {

namespace {

// The corners' positions give two equations for the place (u, v) within the moved picture that a fragment shows.
constexpr const char* kSolve = R"(    vec2 at = 2.0 * gl_TexCoord[0].st - 1.0;
    vec4 right = p10 - p00;
    vec4 up = p01 - p00;
    vec2 none = at * p00.w - p00.xy;
    vec2 a = right.xy - at * right.w;
    vec2 b = up.xy - at * up.w;
    float d = a.x * b.y - b.x * a.y;
    CORNER = vec2(none.x * b.y - b.x * none.y, a.x * none.y - none.x * a.y) / d;
    vec4 position = p00 + right * CORNER.x + up * CORNER.y;
    bool isSeen = d != 0.0 && position.w > 0.0 && abs(position.z) <= position.w &&
        CORNER.x >= 0.0 && CORNER.y >= 0.0 && CORNER.x <= 1.0 && CORNER.y <= 1.0;
)";

}  // namespace

VertexStage ReadVertexStage(GlslTokens tokens, const std::set<std::string>& names) {
    VertexStage stage;
    std::set<std::string> taken = names;
    const std::set<std::string> words = WordsOf(tokens);
    taken.insert(words.begin(), words.end());
    stage.varyings = TakeVaryings(tokens);
    for (const std::string& function : FunctionsOf(tokens)) {
        if (function == "main" || names.contains(function)) {
            const std::string name = UnusedName(taken, function == "main" ? "vertexMain" : function + "AtCorner");
            taken.insert(name);
            Rename(tokens, function, name);
            if (function == "main") stage.vertexMain = name;
        }
    }
    for (const std::string& global : GlobalsOf(tokens)) {
        if (!names.contains(global)) continue;
        const std::string name = UnusedName(taken, global + "AtCorner");
        taken.insert(name);
        Rename(tokens, global, name);
    }
    stage.corner = UnusedName(taken, "corner");
    stage.place = UnusedName(taken, "placeFragment");
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const std::string& word = tokens[i].source;
        if (word == "isf_vertShaderInit" || word == "vv_vertShaderInit") {
            const std::size_t close = ClosingBracket(tokens, NextSignificant(tokens, i + 1));
            for (std::size_t k = i; k <= close && k < tokens.size(); ++k) tokens[k].text.clear();
        }
    }
    stage.movesCorners = words.contains("gl_Position");
    Rename(tokens, "isf_FragNormCoord", stage.corner);
    Rename(tokens, "vv_FragNormCoord", stage.corner);
    if (stage.movesCorners) Rename(tokens, "gl_Position", "vertexPosition");
    stage.tokens = std::move(tokens);
    return stage;
}

std::vector<VaryingPart> PartsOf(const std::vector<Varying>& varyings) {
    std::vector<VaryingPart> parts;
    for (const Varying& varying : varyings) {
        if (varying.array.empty()) {
            parts.push_back({varying.type, varying.name, varying.name + "_0_"});
            continue;
        }
        for (int i = 0; i < varying.length(); ++i)
            parts.push_back(
                {varying.type, fmt::format("{}[{}]", varying.name, i), fmt::format("{}_{}_", varying.name, i)});
    }
    return parts;
}

std::string CornerCalls(const VertexStage& stage, int corners) {
    std::string text;
    const std::vector<VaryingPart> parts = PartsOf(stage.varyings);
    const char* places[] = {"0.0, 0.0", "1.0, 0.0", "0.0, 1.0", "1.0, 1.0"};
    const char* suffixes[] = {"00", "10", "01", "11"};
    for (int i = 0; i < corners; ++i) {
        text += fmt::format("    {} = vec2({});\n", stage.corner, places[i]);
        if (stage.movesCorners)
            text += fmt::format("    vertexPosition = vec4(2.0 * {} - 1.0, 0.0, 1.0);\n", stage.corner);
        text += fmt::format("    {}();\n", stage.vertexMain);
        if (stage.movesCorners) text += fmt::format("    vec4 p{} = vertexPosition;\n", suffixes[i]);
        for (const VaryingPart& part : parts)
            text += fmt::format("    {} {}{} = {};\n", part.type, part.base, suffixes[i], part.name);
    }
    return text;
}

std::string PlaceFunction(const VertexStage& stage) {
    std::string text = fmt::format("bool {}()\n{{\n", stage.place) + CornerCalls(stage, 3);
    if (stage.movesCorners) {
        std::string solve = kSolve;
        for (std::size_t at = solve.find("CORNER"); at != std::string::npos; at = solve.find("CORNER", at))
            solve.replace(at, 6, stage.corner);
        text += solve;
    } else {
        text += fmt::format("    {} = gl_TexCoord[0].st;\n", stage.corner);
    }
    for (const VaryingPart& part : PartsOf(stage.varyings))
        text += fmt::format("    {0} = {1}00 + ({1}10 - {1}00) * {2}.x + ({1}01 - {1}00) * {2}.y;\n", part.name,
                            part.base, stage.corner);
    return text + (stage.movesCorners ? "    return isSeen;\n}\n" : "    return true;\n}\n");
}

}  // namespace quillon::cli
