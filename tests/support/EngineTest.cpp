#include "support/EngineTest.h"

#include <duktape.h>

#include <algorithm>
#include <cstring>

#include "script/Scripting.h"

namespace quillon::test {

const char* const kConfig =
    "<MAJOR_VERSION>1</MAJOR_VERSION><MINOR_VERSION>2</MINOR_VERSION><BUILD_VERSION>0</BUILD_VERSION>"
    "<STAGE_VERSION>3</STAGE_VERSION><FLAGS>33554464</FLAGS><FLAGS2>5120</FLAGS2>"
    "<ABOUT>A test</ABOUT><FXNAME>Test</FXNAME><AGEP_ID>TestId</AGEP_ID>";

const char* const kCopyFragment =
    "uniform sampler2D sInput0;\n"
    "void main() { gl_FragColor = texture2D(sInput0, gl_TexCoord[0].st); }\n";

std::string CopyScript(bool flip) {
    return std::string(
               "var copy;\n"
               "function setup() { copy = QL_initShader('copy'); }\n"
               "function draw() {\n"
               "  var input = QL_getSequenceTexture();\n"
               "  QL_setTextureParam(input, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);\n"
               "  QL_setTextureParam(input, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);\n"
               "  QL_setShaderParamVal(copy, 'sInput0', input);\n"
               "  QL_renderShader(copy, QL_getSequenceRT(), ") +
           (flip ? "true" : "false") + ");\n}\n";
}

EngineTest::~EngineTest() {
    for (SequenceHandle* instance : instances) engine.destroySequence(instance);
}

void EngineTest::start(const std::string& script, const Files& files) {
    Files all = files;
    all.emplace_back("fx.js", script);
    const bool hasConfig =
        std::any_of(files.begin(), files.end(), [](auto& file) { return file.first == "config.xml"; });
    if (!hasConfig) all.emplace_back("config.xml", kConfig);
    effects.push_back(std::make_unique<TestEffect>(all));
    ASSERT_TRUE(engine.init(effects.back()->module(), nullptr));
    ASSERT_TRUE(engine.lockGL()) << "these tests need a GL context";
    engine.unlockGL();
}

SequenceHandle* EngineTest::addInstance() {
    instances.push_back(engine.createSequence());
    engine.selectSequence(instances.back());
    return instances.back();
}

void EngineTest::removeInstance(SequenceHandle* instance) {
    std::erase(instances, instance);
    engine.destroySequence(instance);
}

void EngineTest::expectValues(std::initializer_list<ScriptRow> rows) {
    for (const ScriptRow& row : rows) EXPECT_EQ(eval(row.expression), row.json) << row.expression;
}

std::string EngineTest::eval(const std::string& expression) {
    const bool locked = engine.lockGL();
    duk_context* ctx = Scripting::instance().Context();
    const std::string text = "(function(v){return v===undefined?'undefined':JSON.stringify(v);})(" + expression + ")";
    const bool failed = duk_peval_string(ctx, text.c_str()) != 0;
    const std::string result = (failed ? "throws " : "") + std::string(duk_safe_to_string(ctx, -1));
    duk_pop(ctx);
    if (locked) engine.unlockGL();
    return result;
}

std::vector<std::byte> EngineTest::frame(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth,
                                         std::span<const std::byte> input, double timeSeconds) {
    const std::size_t rowBytes = std::size_t{width} * bitDepth / 2;
    std::vector<std::byte> result;
    if (!engine.lockGL()) return result;
    if (!input.empty()) engine.setLayerPixels(kInputLayer, input.data(), width, height, bitDepth, rowBytes);
    engine.draw(timeSeconds, width, height, bitDepth, 1.0f);
    if (const void* pixels = engine.mapResult()) {
        result.resize(rowBytes * height);
        std::memcpy(result.data(), pixels, result.size());
        engine.unmapResult(pixels);
    }
    engine.unlockGL();
    return result;
}

std::string EngineTest::shaderErrors() {
    std::string errors;
    return engine.shaderErrors(errors);
}

}  // namespace quillon::test
