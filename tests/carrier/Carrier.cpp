// An empty module. The package lies behind its image; the engine finds it by the handle that the loader gives.
#include "platform/Export.h"

extern "C" QUILLON_EXPORT const char quillonCarrier[] = "quillon carrier";
