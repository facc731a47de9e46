#include "cli/EffectSession.h"

#include <fmt/format.h>
#include <stdlib.h>

#include <cstring>
#include <rapidxml/rapidxml.hpp>

#include "cli/EngineLock.h"
#include "cli/PackedModule.h"
#include "cli/ScriptFaults.h"
#include "cli/ShaderFaults.h"
#include "engine/AEQuillon2.h"
#include "imagelib/HostRange.h"

namespace quillon::cli {

namespace {

void StartEngine(IPlugin& engine, const EffectSource& source) {
    setenv("EGL_LOG_LEVEL", "fatal", /*overwrite=*/0);  // what its loader has tried is no help to an author
    const PackedModule module(source);
    CollectScriptErrors();
    try {
        if (!engine.init(module.handle(), nullptr)) throw NoOpenGL();
    } catch (const rapidxml::parse_error& error) {
        throw EffectFault(
            {{.path = source.pathOf("config.xml"), .text = error.what(), .kind = Diagnostic::Kind::config}});
    }
    const EngineLock lock(engine);  // without a context nothing of what follows could work
}

}  // namespace

EffectSession::EffectSession(EffectSource effect) : source(std::move(effect)), engine(AEQuillon2::instance()) {
    ThrowIfAny(CheckSource(source));
    StartEngine(engine, source);
    throwFaults();
    engine.selectSequence(engine.createSequence());
    for (std::uint32_t index = 0; index < engine.parameterCount(); ++index) {
        const Parameter& parameter = *engine.parameterInfo(index);
        const bool isShown = parameter.id != 0 && (parameter.flags & ParameterFlag::hidden) == 0;
        if (isShown) visibleControls.push_back({index, parameter});
    }
}

Picture EffectSession::render(const FrameRequest& request) {
    const Picture& input = *request.input;
    const std::uint32_t bitDepth = BitDepth(input.format);
    std::uint32_t width = input.width;
    std::uint32_t height = input.height;
    const std::uint32_t largest = LargestTextureExtent(engine);
    const auto check = [&](const char* what, const Picture& picture) {
        if (IsPossibleExtent(picture.width, picture.height, largest)) return;
        throw Fault(fmt::format("{} has {}x{} pixels; the graphics driver takes up to {} in each direction", what,
                                picture.width, picture.height, largest));
    };
    check("the input", input);
    for (const auto& [index, layer] : request.layers) check("a layer", *layer);

    engine.setContextExtent(input.width, input.height, /*pixelAspect=*/1.0f);
    sendControls(input);
    {
        const EngineLock lock(engine);
        engine.preRender(input.width, input.height, &width, &height);
    }
    if (!IsPossibleExtent(width, height, largest)) {
        // The script's numbers are signed, whatever they are carried in.
        throw EffectFault(
            {{.path = source.pathOf("fx.js"),
              .text = fmt::format("preRender: asks for an output of {}x{} pixels; the graphics driver "
                                  "takes 1 to {} in each direction",
                                  static_cast<std::int32_t>(width), static_cast<std::int32_t>(height), largest),
              .kind = Diagnostic::Kind::render}});
    }

    // The output is centred on the input. Its origin is where the input's top left corner lies in it.
    engine.setInputOrigin((width >> 1) - (input.width >> 1), (height >> 1) - (input.height >> 1));
    const EngineLock lock(engine);
    engine.setLayerPixels(kInputLayer, input.pixels.data(), input.width, input.height, bitDepth, input.rowBytes());
    for (const auto& [index, layer] : request.layers) {
        engine.setLayerPixels(index, layer->pixels.data(), layer->width, layer->height, bitDepth, layer->rowBytes());
    }
    engine.draw(request.timeSeconds, width, height, bitDepth, /*pixelAspect=*/1.0f);
    throwFaults();
    return readResult(width, height, bitDepth);
}

void EffectSession::sendControls(const Picture& input) {
    for (const Control& control : visibleControls) {
        const auto set = values.find(control.index);
        const auto value =
            set != values.end() ? std::optional(set->second) : HostDefault(control.declared, input.width, input.height);
        if (value) engine.setParameterValue(control.index, value->data());
    }
}

Picture EffectSession::readResult(std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth) {
    Picture result = Picture::Make(width, height, HostFormat(bitDepth), ChannelOrder::argb);
    const auto* mapped = static_cast<const std::byte*>(engine.mapResult());
    if (!mapped) {
        throw EffectFault({{.path = source.folder.string(),
                            .text = fmt::format("the frame of {}x{} at {} bits was not rendered: the script released "
                                                "its target, or the graphics driver gave no pixels; look at draw(), "
                                                "or render it smaller",
                                                width, height, bitDepth),
                            .kind = Diagnostic::Kind::render}});
    }
    // GL's first row is the bottom one.
    for (std::uint32_t y = 0; y < height; ++y, mapped += result.rowBytes()) {
        std::byte* row = result.row<std::byte>(height - 1 - y);
        if (bitDepth == 16) {
            FoldToHostRow(mapped, row, std::size_t{width} * 4);
        } else {
            std::memcpy(row, mapped, result.rowBytes());
        }
    }
    engine.unmapResult(nullptr);
    return result;
}

void EffectSession::throwFaults() {
    Diagnostics faults = TakeScriptFaults(source);
    std::string shaderErrors;
    const Diagnostics shaderFaults = ExplainShaderErrors(engine.shaderErrors(shaderErrors), source);
    faults.insert(faults.end(), shaderFaults.begin(), shaderFaults.end());
    ThrowIfAny(faults);
}

}  // namespace quillon::cli
