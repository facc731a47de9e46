#pragma once

#include <memory>

#include "host/Drawing.h"
#include "host/World.h"

namespace quillon::host {

// Something of the host's that an effect gets a reference to and has to give back in the same selector.
struct HostObject {
    const char* kind;                // one of kObject
    Drawing drawing{};               // pens, brushes, paths, images: what they add to a drawing
    A_Time time{};                   // render options
    std::shared_ptr<World> world{};  // receipts
};

inline constexpr char kObjectEffect[] = "effect reference";
inline constexpr char kObjectRenderOptions[] = "render options";
inline constexpr char kObjectReceipt[] = "frame receipt";
inline constexpr char kObjectPen[] = "pen";
inline constexpr char kObjectBrush[] = "brush";
inline constexpr char kObjectPath[] = "path";
inline constexpr char kObjectImage[] = "image";

}  // namespace quillon::host
