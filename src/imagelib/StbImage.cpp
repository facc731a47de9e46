// The code of the image decoder, in a separate source so that its macros reach no other code.

#include <cstdlib>

#include "platform/MemoryShortage.h"

namespace {

// The decoder answers with no picture, as it does to a damaged file.
void* Noted(void* block) {
    if (!block) quillon::NoteMemoryShortage();
    return block;
}

}  // namespace

// No assertion may end the host's process, and no memory is read that a damaged file has left unfilled.
#define STBI_ASSERT(condition) static_cast<void>(0)
#define STBI_MALLOC(bytes) Noted(std::calloc(1, (bytes)))
#define STBI_REALLOC(block, bytes) Noted(std::realloc((block), (bytes)))
#define STBI_FREE(block) std::free(block)

#define STBI_NO_STDIO
#define STBI_NO_FAILURE_STRINGS
#define STBI_NO_PIC
#define STBI_NO_PNM

#define STB_IMAGE_IMPLEMENTATION
#include <stb/stb_image.h>
