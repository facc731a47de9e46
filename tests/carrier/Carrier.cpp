// Something to export, so that there is a module. The engine finds the package by the handle that the loader gives.
#include "platform/Export.h"

extern "C" QUILLON_EXPORT const char kQuillonCarrier[] = "quillon carrier";
