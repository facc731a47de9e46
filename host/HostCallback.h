#pragma once

#include <cstdint>

namespace quillon::host {

// Every function that the host offers, by one name for faults, hooks and trace. Some carry a key that distinguishes
// calls of the same function. The key is named here; it is 0 for the others.
enum class Callback {
    acquireSuite,  // version
    releaseSuite,  // version
    newHandle,     // size in bytes
    lockHandle,
    unlockHandle,
    disposeHandle,
    platformData,  // which
    copy,
    fill,
    addParam,       // the host index that the control gets
    checkoutParam,  // host index
    checkinParam,
    registerUI,  // events
    abort,
    progress,
    checkoutLayer,   // checkout id
    checkoutPixels,  // checkout id
    checkinPixels,   // checkout id
    checkoutOutput,
    updateParamUI,  // host index
    setOptionsButtonName,
    floatingPointColor,  // host index
    pixelData8,
    pixelData16,
    pixelDataFloat,
    worldFormat,
    drawingReference,
    setExtendedTool,  // tool
    addPixelFormat,   // format
    clearPixelFormats,
    premiereFormat,
    containingTimeline,
    frameRect,
    sequenceAspect,
    effectLayer,
    newEffect,
    parentComp,
    compItem,
    itemDimensions,
    itemAspect,
    registerAegp,
    disposeEffect,
    newRenderOptions,
    disposeRenderOptions,
    setRenderTime,  // value of the time
    renderLayerFrame,
    checkinFrame,
    receiptWorld,
    fillOutWorld,
    drawSupplier,
    drawSurface,
    newPen,
    newBrush,
    newImage,
    newPath,
    releaseObject,
    paintRect,
    fillPath,
    strokePath,
    drawImage,
    moveTo,
    lineTo,
    addArc,
};
inline constexpr int kCallbackCount = static_cast<int>(Callback::addArc) + 1;

// What is known of a callback.
struct CallbackInfo {
    Callback callback;
    const char* name;   // as the host's interface has it
    const char* suite;  // the suite that it belongs to and that must be held when it is called; null: none
};

const CallbackInfo& InfoOf(Callback callback);  // its row

}  // namespace quillon::host
