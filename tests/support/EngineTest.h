#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "engine/AEQuillon2.h"
#include "support/TestEffect.h"

namespace quillon::test {

// A config.xml that says what most tests need.
extern const char* const kConfig;

// A fragment shader that copies sInput0 as it is, and a script that draws it from the input into the output, with
// `flip` as QL_renderShader takes it and nearest filtering.
extern const char* const kCopyFragment;
std::string CopyScript(bool flip);

// A script expression and its value as EngineTest::eval gives it.
struct ScriptRow {
    std::string expression;
    std::string json;
};

// The engine of this process, started with an effect and a GL context.
class EngineTest : public ::testing::Test {
protected:
    ~EngineTest() override;

    // Packs `script` as fx.js, a config.xml unless `files` has one, and `files`; loads that and starts the engine with
    // it. Fails the test when there is no GL.
    void start(const std::string& script, const Files& files = {});

    // createSequence and selectSequence.
    SequenceHandle* addInstance();
    // destroySequence of an instance that addInstance gave.
    void removeInstance(SequenceHandle* instance);

    // The value of a script expression as JSON text: "1", "[1,2]", "true", "\"text\"", "null" for NaN, and
    // "undefined"; "throws NAME: TEXT" when it throws. Runs under the GL lock with the selected instance current.
    std::string eval(const std::string& expression);
    // Evaluates the rows from the first to the last; what one leaves, the next finds.
    void expectValues(std::initializer_list<ScriptRow> rows);

    // One frame of the selected instance under the GL lock: uploads `input` (tight rows, host order, at this depth)
    // unless it is empty, draws, and gives the mapped result, y = 0 first, tight rows in GL's range; empty when
    // nothing was mapped.
    std::vector<std::byte> frame(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth,
                                 std::span<const std::byte> input = {}, double timeSeconds = 0);

    // What shaderErrors says.
    std::string shaderErrors();

    IPlugin& engine = AEQuillon2::instance();

private:
    std::vector<std::unique_ptr<TestEffect>> effects;
    std::vector<SequenceHandle*> instances;
};

}  // namespace quillon::test
