#pragma once

#include <memory>

#include "engine/IPlugin.h"

namespace quillon {

class ConfigDocument;
class OpenGLContext;

// The one implementation of IPlugin, and the one engine of the process.
class AEQuillon2 final : public IPlugin {
public:
    // Made at the first call; it does not start the engine.
    static AEQuillon2& instance();

    // The operations of IPlugin, described there.
    bool init(void* module, void* unused) override;
    bool restartScript() override;
    void shutdown() override;
    SequenceHandle* createSequence() override;
    void destroySequence(SequenceHandle* handle) override;
    void selectSequence(SequenceHandle* handle) override;
    bool reservedHook6(bool unused) override;
    void preRender(std::uint32_t width, std::uint32_t height, std::uint32_t* outWidth,
                   std::uint32_t* outHeight) override;
    void draw(double timeSeconds, std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth,
              float pixelAspect) override;
    void reservedHook9() override;
    void updateUIFlags() override;
    std::uint32_t parameterCount() override;
    Parameter* parameterInfo(std::uint32_t index) override;
    Parameter* parameterValue(std::uint32_t index) override;
    Parameter* setParameterValue(std::uint32_t index, const void* value) override;
    void setLayerPixels(std::uint32_t index, const void* pixels, std::uint32_t width, std::uint32_t height,
                        std::uint32_t bitDepth, std::uint64_t rowBytes) override;
    const void* mapResult() override;
    void unmapResult(const void* unused) override;
    std::uint32_t* packedVersion(std::uint32_t* out) override;
    std::uint32_t effectFlags() override;
    std::uint32_t effectFlags2() override;
    std::uint32_t reservedHook21() override;
    std::string& identityString(std::string& out, std::uint32_t which) override;
    std::uint64_t reservedHook23() override;
    std::string& shaderErrors(std::string& out) override;
    bool isReady() override;
    bool lockGL() override;
    void unlockGL() override;
    std::uint64_t reservedHook28() override;
    void reservedHook29() override;
    void runOverlay(void* unused) override;
    void setContextExtent(std::uint32_t width, std::uint32_t height, float pixelAspect) override;
    void setInputOrigin(std::uint32_t x, std::uint32_t y) override;

private:
    AEQuillon2();
    ~AEQuillon2();

    // Makes the selected instance the current one of the Context. False, and nothing is selected there, without an
    // instance.
    bool enterSelected();
    // Runs one of the script's entry points, unless no script was started.
    void runEntry(const char* text);

    SequenceHandle* selected = nullptr;  // not owned
    std::unique_ptr<ConfigDocument> config;
    std::unique_ptr<OpenGLContext> gl;
    bool started = false;
    bool scriptReady = false;
};

}  // namespace quillon
