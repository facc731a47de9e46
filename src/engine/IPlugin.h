#pragma once

#include <cstdint>
#include <string>

#include "parameter/Parameter.h"

namespace quillon {

// The record that an effect instance's data points at. It is given out by createSequence and ended by
// destroySequence; a restart of the script turns it into one that names nothing.
struct SequenceHandle {
    std::uint8_t reserved = 0;     // nothing reads it
    std::uint32_t slot = 0;        // of the instance's Sequence
    std::uint32_t generation = 0;  // life of the script in which the slot was given out
};

// Index of setLayerPixels for the effect's own input.
inline constexpr std::uint32_t kInputLayer = 0xFFFFFFFF;

// mapResult gives nothing for a frame of so many bytes or more: a shell that knows the size asks before it draws.
inline constexpr std::uint64_t kResultBytesLimit = std::uint64_t{512} << 20;

// Where the input's first column or row is in an output of another extent, whose center is the input's: what
// setInputOrigin takes. Negative where the output is smaller. Each half is cut to whole pixels.
constexpr std::int32_t CenteredOrigin(std::uint32_t output, std::uint32_t input) {
    return static_cast<std::int32_t>((output >> 1) - (input >> 1));
}

// Everything that an effect's shell, or a program that plays its part, can ask of the engine. It holds no type of the
// effect API. Which effect instance an operation means is settled by selectSequence; without a selected handle, or
// with one that names nothing, the operations on an instance do nothing, and those with a result give null.
//
// One call at a time, on any thread: the caller's mutex sees to that. The GL lock (lockGL) is held around
// setLayerPixels, draw, mapResult and unmapResult, and around preRender when the script shall reach GL there.
// C++ exceptions pass through; script errors do not exist here.
//
// The order of the operations is a binary contract, which is why there is no virtual destructor.
class IPlugin {
public:
    // Starts the engine: opens the package in `module`, reads config.xml, makes the GL context and runs the script.
    // `unused` is ignored. False when the system has no OpenGL; throws when config.xml cannot be parsed or the window
    // system refuses the window. A second call keeps the GL context and does the rest anew.
    virtual bool init(void* module, void* unused) = 0;
    // Builds the script heap and all entities anew, from fx.js as it is now. Always true.
    virtual bool restartScript() = 0;
    // Ends heap, entities and GL context. Nothing unless started.
    virtual void shutdown() = 0;

    // A new effect instance, with the declared parameters' values of this moment; it becomes the selected one, though
    // the script sees the one before until the next operation on an instance.
    virtual SequenceHandle* createSequence() = 0;
    virtual void destroySequence(SequenceHandle* handle) = 0;  // null is ignored
    virtual void selectSequence(SequenceHandle* handle) = 0;   // null selects none
    virtual bool reservedHook6(bool unused) = 0;               // always true

    // Asks the script for the output size of an input of this size, in pixels. Each extent that the script leaves
    // open is the input's. Without an instance the outputs are left untouched.
    virtual void preRender(std::uint32_t width, std::uint32_t height, std::uint32_t* outWidth,
                           std::uint32_t* outHeight) = 0;
    // Renders one frame of this size and depth in bits per channel. While a shader does not compile the script does
    // not run, and the frame is the output target's fresh storage.
    virtual void draw(double timeSeconds, std::uint32_t width, std::uint32_t height, std::uint32_t bitDepth,
                      float pixelAspect) = 0;
    virtual void reservedHook9() = 0;
    virtual void updateUIFlags() = 0;  // runs the script function of that name

    // The declared parameters. parameterInfo and parameterValue are one: the current instance's copy of the
    // declaration at this index, or the null Parameter, whose id is 0.
    virtual std::uint32_t parameterCount() = 0;
    virtual Parameter* parameterInfo(std::uint32_t index) = 0;
    virtual Parameter* parameterValue(std::uint32_t index) = 0;
    // Copies 16 bytes over the value, unless the parameter is a LAYER or names nothing, and returns the parameter.
    virtual Parameter* setParameterValue(std::uint32_t index, const void* value) = 0;
    // Uploads a layer, rows top first and `rowBytes` apart (as signed), pixels A, R, G, B; 16-bit channels run from 0
    // to 32768. `index` is that of a LAYER parameter, or kInputLayer. Reads the pixels at once and keeps no pointer.
    virtual void setLayerPixels(std::uint32_t index, const void* pixels, std::uint32_t width, std::uint32_t height,
                                std::uint32_t bitDepth, std::uint64_t rowBytes) = 0;
    // The finished frame: RenderTarget::mapPixels of the instance's output. Null: the frame counts as not rendered.
    virtual const void* mapResult() = 0;
    virtual void unmapResult(const void* unused) = 0;

    // What config.xml says. Absent keys read as 0 and as the empty text.
    virtual std::uint32_t* packedVersion(std::uint32_t* out) = 0;  // an EffectVersion word; returns `out`
    virtual std::uint32_t effectFlags() = 0;
    virtual std::uint32_t effectFlags2() = 0;
    virtual std::uint32_t reservedHook21() = 0;
    // 0: about text; 1: name; 2: name for the registration with the host; else empty. Returns `out`.
    virtual std::string& identityString(std::string& out, std::uint32_t which) = 0;
    virtual std::uint64_t reservedHook23() = 0;

    // The compile and link errors of all shaders, empty when all is well. Returns `out`.
    virtual std::string& shaderErrors(std::string& out) = 0;
    virtual bool isReady() = 0;  // always true

    // The GL lock: the context is made current on the calling thread, then the mutex is waited for. False at once
    // when there is no context or another thread has it. Unlock only what was locked.
    virtual bool lockGL() = 0;
    virtual void unlockGL() = 0;
    virtual std::uint64_t reservedHook28() = 0;
    virtual void reservedHook29() = 0;
    virtual void runOverlay(void* unused) = 0;  // nothing calls it, and it does nothing

    // The composition's extent in pixels and its pixel aspect, shared by all instances; an aspect outside 0.01 to 4.0
    // is stored as 1.0.
    virtual void setContextExtent(std::uint32_t width, std::uint32_t height, float pixelAspect) = 0;
    // Origin of the input layer in the output, signed, in pixels.
    virtual void setInputOrigin(std::uint32_t x, std::uint32_t y) = 0;

protected:
    ~IPlugin() = default;
};

}  // namespace quillon
