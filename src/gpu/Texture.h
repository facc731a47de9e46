#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "gpu/GLNames.h"
#include "gpu/PixelLayout.h"
#include "imagelib/PixelBuffer.h"

namespace quillon {

class Surface;

// One GL 2D texture, and a CPU copy of the last upload that had data.
//
// GL's slots (r, g, b, a) always hold the host's channels (A, R, G, B). Data in that memory order goes up as it is;
// data in R, G, B, A order gets a texture swizzle that brings it to the same place. Row 0 of the memory is at t = 0.
// Depths above 8 are stored as 32-bit floats. There are no mipmaps.
//
// No operation fails. What the driver refuses leaves the texture without storage (storageExists), so that passes read
// black from it and never an earlier picture; the CPU copy and the fields are those of the upload all the same.
//
// Everything here but pixelCopy() and the fields needs the GL lock.
class Texture {
public:
    // The kind's factory, in entities/Factories.h.
    class Factory;

    Texture() = default;
    virtual ~Texture() = default;
    Texture(const Texture&) = delete;
    Texture& operator=(const Texture&) = delete;

    // Makes a new GL texture with empty storage; releases the old one first. Always true.
    virtual bool initTexture(std::uint32_t columns, std::uint32_t rows, std::uint32_t bits, bool argbOrdered);
    // Deletes the GL texture; the CPU copy stays.
    virtual void releaseGL();

    // Specifies the storage anew and fills it from `source`, or leaves its contents undefined when that is null. Also
    // resets filters to linear and wrapping to repeat. With `expand15`, 16-bit data is taken as the host's, 0 to 32768,
    // and widened; all other data goes up as it is. Reads the rows with their padding, but no byte after the pixels of
    // the row that is last in memory; keeps no pointer. `source` may be this texture's own copy, if it is whole.
    void uploadPixels(const void* source, const PixelLayout& layout, bool argbOrdered, bool expand15);

    // Decodes a file of the package into the texture. 1, or 0 when it is missing or no picture; the texture then has
    // no GL name, though name, width and height may be set.
    int loadImage(const std::string& fileName);

    // Uploads the surface's pixels as they are; `flip` turns the rows upside down on the way. An empty surface, and
    // one that holds fewer bytes than its extent, give empty storage.
    void loadFromSurface(Surface& surface, bool flip);

    // glTexParameteri with the numbers that a script gave, unchecked. The texture stays bound.
    void setParameter(std::uint32_t parameterName, std::int32_t value);

    // The CPU copy of the last upload that had data, height * rowBytes bytes of that upload in its own layout, padding
    // included (zero after the last row; rows that were below each other in memory come tight); null before that. It
    // never depends on GL, and needs no context. It is shared: it outlives the texture for those who hold it, and all
    // of them see a change of its bytes. So they see the next upload of as many bytes, unless that widens them.
    const PixelBuffer& pixelCopy() const { return copy; }

    // Whether the driver took the storage that the fields describe.
    bool storageExists() const { return hasStorage; }

    std::string name;  // of the file it came from
    GLTextureName textureName;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;  // 8, 15, 16 or 32
    std::int64_t rowBytes = 0;   // of the last upload; 0 after initTexture
    bool isArgbOrdered = false;  // false: the data is R, G, B, A and swizzled

private:
    // Makes `copy` that of this memory.
    void keepCopy(const std::byte* source, const PixelLayout& layout, bool widen);
    // Gives the bound texture new storage, filled with the rows unless there are none. False, and no storage at all,
    // when the driver refuses.
    static bool Respecify(const PixelLayout& layout, const std::vector<std::byte>* rows);

    PixelBuffer copy;
    bool hasStorage = false;
};

}  // namespace quillon
