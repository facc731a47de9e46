#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "gpu/GLNames.h"
#include "imagelib/PixelBuffer.h"

namespace quillon {

class Surface;

// The four numbers of an upload that describe its memory.
struct PixelLayout {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;  // bits per channel; four channels a pixel
    std::int64_t rowBytes = 0;   // from one row to the next; negative: the rows lie upwards in memory
};

// One GL 2D texture, and a CPU copy of what was last uploaded to it for those who ask.
//
// GL's slots (r, g, b, a) always hold the host's channels (A, R, G, B). Data in that memory order goes up as it stands;
// data in R, G, B, A order gets a texture swizzle that brings it to the same place. Row 0 of the memory is at t = 0.
// Depths above 8 are stored as 32-bit floats. There are no mipmaps, and no GL error is ever asked for.
//
// Everything here needs the GL lock.
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
    // and widened; all other data goes up as it is. Reads row by row what the layout names, and no byte behind the
    // width of the last row; keeps no pointer.
    void uploadPixels(const void* source, const PixelLayout& layout, bool argbOrdered, bool expand15);

    // Decodes a file of the package into the texture. 1, or 0 when it is missing or no picture; the texture then has
    // no GL name, though name, width and height may be set.
    int loadImage(const std::string& fileName);

    // Uploads the surface's pixels as they are; `flip` turns the rows upside down on the way. An empty surface, and
    // one that holds fewer bytes than its extent, give empty storage.
    void loadFromSurface(Surface& surface, bool flip);

    // glTexParameteri with both numbers unchecked. The texture stays bound.
    void setParameter(std::uint32_t parameterName, std::int32_t value);

    // The CPU copy of the last upload that had data, height * rowBytes bytes; null before that. It is shared: whoever
    // holds it keeps the bytes, whatever becomes of the texture, and a change of them is seen by all; so is the next
    // upload of as many bytes, unless it widens them. As long as nobody asks, GL alone holds the picture, and it is
    // read back here: that is exact at 8, 16 and 32 bits, and padding behind rows comes back as zero.
    PixelBuffer pixelCopy();

    std::string name;  // of the file it came from
    GLTextureName textureName;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bitDepth = 0;  // 8, 15, 16 or 32
    std::int64_t rowBytes = 0;   // of the last upload; 0 after initTexture
    bool isArgbOrdered = false;  // false: the data is R, G, B, A and swizzled

protected:
    // False where passes draw into the storage: the copy of an upload is then made at once.
    bool mayLeaveCopyInGL = true;

private:
    // Fills new storage with the rows, which GL reads `rowLength` pixels apart.
    void storeUpload(const std::byte* memory, const PixelLayout& layout, std::int32_t rowLength, bool expand);
    PixelBuffer readBackUpload() const;

    PixelBuffer copy;
    bool copyIsInGL = false;  // the last upload, and `copy` is not made yet
};

// The type constant of GL for the channels of an upload or read-back at this depth.
std::uint32_t GLChannelType(std::uint32_t bitDepth);

}  // namespace quillon
