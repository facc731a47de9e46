// The host's utilities: pixels, text and the module's handle.

#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "host/HostSession.h"
#include "host/HostTables.h"
#include "host/Rectangles.h"

namespace quillon::host {

namespace {

PF_LRect WholeOf(const PF_EffectWorld& world) {
    return {0, 0, world.width, world.height};
}

std::byte* PixelAt(const PF_EffectWorld& world, A_long x, A_long y, std::size_t pixelBytes) {
    return reinterpret_cast<std::byte*>(world.data) + static_cast<std::ptrdiff_t>(y) * world.rowbytes +
           static_cast<std::ptrdiff_t>(x) * static_cast<std::ptrdiff_t>(pixelBytes);
}

// Copies what both rectangles have, from their top left corners on; nothing is scaled.
PF_Err CopyPixels(const CallbackScope& scope, const PF_EffectWorld& source, const PF_EffectWorld& destination,
                  const PF_Rect* sourceRect, const PF_Rect* destinationRect) {
    const int depth = World::DepthOf(source.data);
    // A host has no conversion here: unlike depths are an error, as is a layer without pixels.
    if (depth == 0 || World::DepthOf(destination.data) != depth) return PF_Err_BAD_CALLBACK_PARAM;
    const PF_LRect from = Intersection(sourceRect ? *sourceRect : WholeOf(source), WholeOf(source));
    const PF_LRect to = Intersection(destinationRect ? *destinationRect : WholeOf(destination), WholeOf(destination));
    const A_long width = std::min(from.right - from.left, to.right - to.left);
    const A_long height = std::min(from.bottom - from.top, to.bottom - to.top);
    const auto pixelBytes = static_cast<std::size_t>(depth) / 2;
    if (&source == &destination) return scope.refuse("copy of a world into itself");
    for (A_long y = 0; y < height; ++y)
        std::memmove(PixelAt(destination, to.left, to.top + y, pixelBytes),
                     PixelAt(source, from.left, from.top + y, pixelBytes),
                     static_cast<std::size_t>(std::max(width, A_long{0})) * pixelBytes);
    return PF_Err_NONE;
}

PF_Err Copy(PF_ProgPtr effectRef, PF_EffectWorld* source, PF_EffectWorld* destination, PF_Rect* sourceRect,
            PF_Rect* destinationRect) {
    const CallbackScope scope(effectRef, Callback::copy);
    if (!scope.isInCall()) return scope.error();
    if (!source || !destination) return scope.refuse("copy gets no world");
    const PF_Err error = scope ? CopyPixels(scope, *source, *destination, sourceRect, destinationRect) : scope.error();
    scope->session.record([&](Records& records) {
        records.copies.push_back({*source, *destination, !sourceRect && !destinationRect, error});
    });
    return error;
}

// The bytes of one pixel in a depth, A first; the color has 8 bits a channel.
std::size_t PixelBytesOf(const PF_Pixel& color, int depth, std::byte (&bytes)[16]) {
    const A_u_char channels[4] = {color.alpha, color.red, color.green, color.blue};
    for (int i = 0; i < 4; ++i) {
        const auto wide = static_cast<A_u_short>(std::lround(channels[i] * 32768.0 / 255.0));
        const float real = channels[i] / 255.0f;
        if (depth == 8) std::memcpy(bytes + i, &channels[i], 1);
        if (depth == 16) std::memcpy(bytes + 2 * i, &wide, 2);
        if (depth == 32) std::memcpy(bytes + 4 * i, &real, 4);
    }
    return static_cast<std::size_t>(depth) / 2;
}

PF_Err Fill(PF_ProgPtr effectRef, const PF_Pixel* color, const PF_Rect* rect, PF_EffectWorld* world) {
    const CallbackScope scope(effectRef, Callback::fill);
    if (!scope.isInCall()) return scope.error();
    if (!world) return scope.refuse("fill gets no world");
    const PF_Pixel used = color ? *color : PF_Pixel{255, 0, 0, 0};
    const int depth = World::DepthOf(world->data);
    const PF_Err error = scope && depth == 0 ? PF_Err{PF_Err_BAD_CALLBACK_PARAM} : scope.error();
    scope->session.record([&](Records& records) { records.fills.push_back({used, *world, !rect, error}); });
    if (error != PF_Err_NONE) return error;
    std::byte pixel[16];
    const std::size_t pixelBytes = PixelBytesOf(used, depth, pixel);
    const PF_LRect area = Intersection(rect ? *rect : WholeOf(*world), WholeOf(*world));
    for (A_long y = area.top; y < area.bottom; ++y)
        for (A_long x = area.left; x < area.right; ++x)
            std::memcpy(PixelAt(*world, x, y, pixelBytes), pixel, pixelBytes);
    return PF_Err_NONE;
}

PF_Err PlatformData(PF_ProgPtr effectRef, PF_PlatDataID which, void* data) {
    const CallbackScope scope(effectRef, Callback::platformData, which);
    if (!scope) return scope.error();
    if (which != PF_PlatData_RES_DLLINSTANCE || !data) return PF_Err_BAD_CALLBACK_PARAM;
    *static_cast<void**>(data) = scope->session.moduleHandle();
    return PF_Err_NONE;
}

// A text that is too long for the message would run over what follows it.
std::size_t RoomFor(const char* destination, std::size_t length) {
    const SelectorCall* const call = SelectorCall::Current();
    const std::size_t room = call ? call->roomAt(destination) : SIZE_MAX;
    if (length >= room) call->violation("a text of " + std::to_string(length) + " characters runs over return_msg");
    return std::min(room, length + 1);
}

int PrintText(A_char* destination, const A_char* format, ...) {
    std::va_list arguments, again;
    va_start(arguments, format);
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    if (length >= 0) std::vsnprintf(destination, RoomFor(destination, static_cast<std::size_t>(length)), format, again);
    va_end(again);
    va_end(arguments);
    return length;
}

A_char* CopyText(A_char* destination, const A_char* source) {
    const std::size_t room = RoomFor(destination, std::strlen(source));
    std::memmove(destination, source, room - 1);
    destination[room - 1] = 0;
    return destination;
}

}  // namespace

PF_UtilCallbacks* UtilCallbacks() {
    static PF_UtilCallbacks table = [] {
        PF_UtilCallbacks made{};
        made.copy = Copy;
        made.fill = Fill;
        made.host_new_handle = NewHandle;
        made.host_lock_handle = LockHandle;
        made.host_unlock_handle = UnlockHandle;
        made.host_dispose_handle = DisposeHandle;
        made.ansi.sprintf = PrintText;
        made.ansi.strcpy = CopyText;
        made.get_platform_data = PlatformData;
        return made;
    }();
    return &table;
}

}  // namespace quillon::host
