// What is done for each frame of an effect instance.

#include <cstddef>
#include <cstdio>
#include <cstring>

#include "engine/AEQuillon2.h"
#include "entities/Context.h"
#include "gpu/OpenGLContext.h"
#include "gpu/TextOverlay.h"
#include "script/Scripting.h"

namespace quillon {

namespace {

// Frames of the process since its last buffer swap, whichever instance drew them. The hidden surface swaps on every
// fifth and at no other time.
std::uint32_t swapCounter = 0;
constexpr std::uint32_t kFramesWithoutSwap = 4;

RenderTarget& CurrentOutput() {
    Context& context = Context::Instance();
    return context.FindRenderTarget(context.CurrentSequence().renderTarget);
}

}  // namespace

void AEQuillon2::runEntry(const char* text) {
    if (scriptReady) Scripting::instance().Eval(text);
}

void AEQuillon2::preRender(std::uint32_t width, std::uint32_t height, std::uint32_t* outWidth,
                           std::uint32_t* outHeight) {
    if (!enterSelected()) return;
    Sequence& sequence = Context::Instance().CurrentSequence();
    sequence.outputWidth = 0;
    sequence.outputHeight = 0;
    char text[64];
    std::snprintf(text, sizeof text, "preRender(%d,%d,%d);", static_cast<int>(width), static_cast<int>(height), 1);
    runEntry(text);
    *outWidth = sequence.outputWidth != 0 ? sequence.outputWidth : width;
    *outHeight = sequence.outputHeight != 0 ? sequence.outputHeight : height;
}

void AEQuillon2::draw(double timeSeconds, std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth, float) {
    if (!enterSelected()) return;
    Context& context = Context::Instance();
    FrameImage image;
    image.width = width;
    image.height = height;
    image.bits = bitDepth;
    context.CurrentSequence().prepareOutput(image, timeSeconds);

    const std::string errors = context.ShaderErrors();
    if (errors.empty())
        runEntry("draw();");
    else
        textOverlay(errors);

    if (++swapCounter > kFramesWithoutSwap) {
        if (gl) gl->swapBuffers();
        swapCounter = 0;
    }
}

void AEQuillon2::updateUIFlags() {
    if (enterSelected()) runEntry("updateUIFlags();");
}

std::uint32_t AEQuillon2::parameterCount() {
    return Context::Instance().Count();
}

Parameter* AEQuillon2::parameterInfo(std::uint32_t index) {
    Context& context = Context::Instance();
    return &context.FindParameter(context.At(index).id);
}

Parameter* AEQuillon2::parameterValue(std::uint32_t index) {
    return parameterInfo(index);
}

Parameter* AEQuillon2::setParameterValue(std::uint32_t index, const void* value) {
    if (!enterSelected()) return nullptr;
    Parameter* parameter = parameterInfo(index);
    if (value && parameter->id != 0 && parameter->kind != LAYER)
        std::memcpy(parameter->value, value, sizeof parameter->value);
    return parameter;
}

void AEQuillon2::setLayerPixels(std::uint32_t index, const void* pixels, std::uint32_t width, std::uint32_t height,
                                std::uint32_t bitDepth, std::uint64_t rowBytes) {
    if (!pixels || rowBytes == 0 || !enterSelected()) return;
    Context& context = Context::Instance();
    if (index == kInputLayer) {
        FrameImage image;
        image.width = width;
        image.height = height;
        image.stride = rowBytes;
        image.bits = bitDepth;
        image.pixels = pixels;
        context.CurrentSequence().setInput(image);
        return;
    }
    // The texture is the declaration's, shared by all instances; its GL name goes only to this instance's copy.
    Parameter* parameter = parameterInfo(index);
    Texture& texture = context.FindTexture(parameter->texture);
    if (!texture.textureName) return;
    texture.uploadPixels(pixels, {width, height, bitDepth, static_cast<std::int64_t>(rowBytes)}, /*argbOrdered=*/true,
                         /*expand15=*/true);
    parameter->setWordValue(texture.textureName.get());
}

const void* AEQuillon2::mapResult() {
    if (!selected) return nullptr;
    // A script can put a smaller picture into its output: the caller would read past the end of that one.
    RenderTarget& target = CurrentOutput();
    const std::size_t bytes = std::size_t{target.width} * target.height * target.bitDepth / 2;
    const bool isWhole = target.isUsable() && bytes >= Context::Instance().CurrentSequence().frameBytes;
    return isWhole ? target.mapPixels() : nullptr;
}

void AEQuillon2::unmapResult(const void*) {
    if (selected && CurrentOutput().isUsable()) RenderTarget::unmapPixels();
}

std::string& AEQuillon2::shaderErrors(std::string& out) {
    out = Context::Instance().ShaderErrors();
    return out;
}

void AEQuillon2::setContextExtent(std::uint32_t width, std::uint32_t height, float pixelAspect) {
    Context::Instance().SetExtent(width, height, pixelAspect);
}

void AEQuillon2::setInputOrigin(std::uint32_t x, std::uint32_t y) {
    if (!enterSelected()) return;
    Sequence& sequence = Context::Instance().CurrentSequence();
    sequence.originX = x;
    sequence.originY = y;
}

}  // namespace quillon
