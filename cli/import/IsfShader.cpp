#include "cli/import/IsfShader.h"

#include <fmt/format.h>

#include <algorithm>

#include "cli/import/BuiltIns.h"
#include "cli/import/ControlNames.h"
#include "cli/import/GlslConditions.h"
#include "cli/import/GlslDialect.h"
#include "cli/import/GlslHelpers.h"
#include "cli/import/GlslOutline.h"
#include "cli/import/GlslReads.h"
#include "cli/import/GlslWalk.h"
#include "cli/import/ShaderText.h"
#include "cli/import/VertexStage.h"

namespace quillon::cli {

namespace {

class Builder {
public:
    Builder(const IsfFile& isf, const IsfVertexFile& vertexFile, const std::string& shaderName,
            ImportFindings& importFindings, CornerProbe& cornerProbe)
        : file(isf), vertex(vertexFile), findings(importFindings), probe(cornerProbe) {
        shader.name = shaderName;
    }

    PlannedShader build() {
        fragment = ReadTokens(file.body, file.bodyLine);
        SettleVersions(fragment);
        varyings = TakeVaryings(fragment);
        takeColor();
        takeUniforms(fragment, findings);
        for (const auto& [name, uniform] : file.renamed) Rename(fragment, name, uniform);
        words = WordsOf(fragment);
        if (!vertex.text.empty()) readVertexStage();
        const DialectResult dialect = translate();
        const bool needsMain = !dialect.starters.empty() || !stage.vertexMain.empty() || !color.empty();
        if (!FunctionsOf(fragment).contains("main")) findings.refuse(0, "no main(): the file has nothing to draw");
        const std::string inner = UnusedName(words, "shadeFragment");
        if (needsMain) Rename(fragment, "main", inner);
        QuoteMainInComments(fragment);

        GlslTokens comments = ReadTokens(file.before, 1);
        QuoteMainInComments(comments);
        ShaderText text;
        text.add(comments);
        text.add(TakeLeadingComments(fragment));
        const std::string headText = head(dialect);
        text.add(headText);
        text.add(stage.tokens, /*isCommon=*/true);
        if (!stage.vertexMain.empty()) text.add(PlaceFunction(stage));
        text.add(fragment);
        if (needsMain) text.add(ownMain(inner, dialect));
        if (!stage.vertexMain.empty()) {
            probe.shader = WriteCornerProbe(stage, headText, dialect.starters, file.plan);
            for (const VaryingPart& part : PartsOf(stage.varyings)) probe.varyings.push_back(part.name);
            probe.file = vertex.findings->file();
            if (stage.movesCorners)
                probe.line = std::ranges::find(stage.tokens, "vertexPosition", &GlslToken::source)->line;
        }
        shader.text = text.text();
        shader.originLines = text.origins();
        shader.common = vertex.findings->file();
        return std::move(shader);
    }

private:
    // Newer GLSL gives the color in a variable of the file's own.
    void takeColor() {
        for (const Varying& varying : varyings) {
            if (!varying.isOut) continue;
            if (!color.empty() || varying.type != "vec4" || !varying.array.empty())
                findings.refuse(0, fmt::format("out {} {}: a shader has one color as its result, a vec4", varying.type,
                                               varying.name));
            color = varying.name;
        }
    }

    // The file's own declarations of what is declared for it go. What nobody feeds stays, and is 0.
    void takeUniforms(GlslTokens& tokens, ImportFindings& found) {
        const GlslTokens before = tokens;
        for (const Varying& uniform : TakeUniforms(tokens)) {
            const auto isNamed = [&](const auto& picture) { return picture.name == uniform.name; };
            const auto renamed = file.renamed.find(uniform.name);
            const std::string& name = renamed == file.renamed.end() ? uniform.name : renamed->second;
            if (file.uniforms.contains(name) || FindBuiltIn(name, ShaderFormat::isf) || renamed != file.renamed.end() ||
                std::ranges::any_of(file.plan.images, isNamed) || std::ranges::any_of(file.plan.targets, isNamed) ||
                std::ranges::any_of(unfed, isNamed))
                continue;
            const auto place = std::ranges::find(before, uniform.name, &GlslToken::source);
            found.warn(place == before.end() ? 0 : place->line,
                       fmt::format("uniform {}: it is no input, and stays 0; declare it in INPUTS", uniform.name));
            unfed.push_back(uniform);
        }
    }

    void readVertexStage() {
        GlslTokens tokens = ReadTokens(vertex.text, 1);
        SettleVersions(tokens);
        takeUniforms(tokens, *vertex.findings);
        for (const auto& [name, uniform] : file.renamed) Rename(tokens, name, uniform);
        stage = ReadVertexStage(std::move(tokens), words);
        for (const Varying& varying : stage.varyings) {
            const auto isSame = [&](const Varying& other) { return other.name == varying.name; };
            if (std::ranges::none_of(varyings, isSame)) varyings.push_back(varying);
        }
        if (stage.vertexMain.empty()) {
            vertex.findings->refuse(0, "no main(): the vertex shader has nothing to do");
            return;
        }
        for (const Varying& varying : stage.varyings) {
            if (!varying.array.empty() && varying.length() == 0)
                vertex.findings->refuse(0, fmt::format("varying {}{}: write the size of the array as a number",
                                                       varying.name, varying.array));
        }
        const std::set<std::string> stageWords = WordsOf(stage.tokens);
        words.insert(stageWords.begin(), stageWords.end());
    }

    DialectResult translate() {
        DialectOptions options{.own = FunctionsOf(fragment)};
        for (const PlannedImage& image : file.plan.images) options.pictures.insert(image.name);
        for (const PlannedTarget& target : file.plan.targets) options.pictures.insert(target.name);
        for (const auto& [name, type] : file.uniforms) options.globals[name] = *TypeNamed(type);
        for (const Varying& varying : varyings) {
            GlslType type = TypeNamed(varying.type).value_or(GlslType{});
            type.isArray = !varying.array.empty();
            options.globals[varying.name] = type;
        }
        for (const std::string& word : words) {
            if (const BuiltIn* builtIn = FindBuiltIn(word, ShaderFormat::isf))
                options.globals[word] = *TypeNamed(builtIn->type);
        }
        for (const Varying& uniform : unfed)
            options.globals[uniform.name] = TypeNamed(uniform.type).value_or(GlslType{});
        options.globals["isf_FragNormCoord"] = options.globals["vv_FragNormCoord"] = FloatOfSize(2);
        DialectResult result = Translate(fragment, options, findings);
        if (stage.vertexMain.empty()) return result;
        options.globals[stage.corner] = FloatOfSize(2);
        const std::set<std::string> own = FunctionsOf(stage.tokens);
        options.own.insert(own.begin(), own.end());
        const DialectResult ofStage = Translate(stage.tokens, options, *vertex.findings);
        result.add(ofStage);
        return result;
    }

    std::string head(const DialectResult& dialect) {
        std::string text;
        for (const PlannedControl& control : file.plan.controls) {
            if (words.contains(control.uniform)) declare(file.uniforms.at(control.uniform), control.uniform, text);
        }
        for (const std::string& word : words) {
            if (const BuiltIn* builtIn = FindBuiltIn(word, ShaderFormat::isf)) declare(builtIn->type, word, text);
        }
        for (const Varying& uniform : unfed)
            text += fmt::format("uniform {} {}{};\n", uniform.type, uniform.name, uniform.array);
        const auto sampler = [&](const std::string& name) {
            if (!dialect.usedPictures.contains(name)) return;
            PlannedSampler planned{.uniform = name, .picture = name};
            text += fmt::format("uniform sampler2D {};\n", name);
            if (dialect.reads.sized.contains(name)) {
                planned.size = dialect.reads.sizes.at(name);
                declare("vec2", planned.size, text);
            }
            shader.samplers.push_back(planned);
        };
        for (const PlannedImage& image : file.plan.images) sampler(image.name);
        for (const PlannedTarget& target : file.plan.targets) sampler(target.name);
        const std::string place = stage.movesCorners ? stage.corner : "gl_TexCoord[0].st";
        for (const char* name : {"isf_FragNormCoord", "vv_FragNormCoord"}) {
            if (words.contains(name)) text += fmt::format("#define {} {}\n", name, place);
        }
        if (!stage.vertexMain.empty()) text += fmt::format("vec2 {};\n", stage.corner);
        if (stage.movesCorners) text += "vec4 vertexPosition;\n";
        for (const Varying& varying : varyings)
            text += fmt::format("{} {}{};\n", varying.type, varying.name, varying.array);
        if (!dialect.usedPictures.empty()) text += dialect.reads.definitions(place);
        text += HelpersFor(dialect.calls, dialect.own);
        return text.empty() ? text : text + "\n";
    }

    void declare(const std::string& type, const std::string& name, std::string& text) {
        text += fmt::format("uniform {} {};\n", type, name);
        shader.uniforms.insert(name);
    }

    std::string ownMain(const std::string& inner, const DialectResult& dialect) const {
        std::string text = "\nvoid main()\n{\n";
        for (const std::string& starter : dialect.starters) text += fmt::format("    {}();\n", starter);
        if (stage.movesCorners)
            text += fmt::format("    if (!{}()) {{\n        gl_FragColor = vec4(0.0);\n        return;\n    }}\n",
                                stage.place);
        else if (!stage.vertexMain.empty())
            text += fmt::format("    {}();\n", stage.place);
        text += fmt::format("    {}();\n", inner);
        if (!color.empty()) text += fmt::format("    gl_FragColor = {};\n", color);
        return text + "}\n";
    }

    const IsfFile& file;
    const IsfVertexFile& vertex;
    ImportFindings& findings;
    CornerProbe& probe;
    PlannedShader shader;
    GlslTokens fragment;
    std::vector<Varying> varyings;
    std::string color;           // the file's own variable of the result; empty: gl_FragColor
    std::vector<Varying> unfed;  // uniforms that the file declares and nobody knows
    std::set<std::string> words;
    VertexStage stage;
};

}  // namespace

PlannedShader WriteIsfShader(const IsfFile& file, const IsfVertexFile& vertex, const std::string& shaderName,
                             ImportFindings& findings, CornerProbe& probe) {
    return Builder(file, vertex, shaderName, findings, probe).build();
}

}  // namespace quillon::cli
