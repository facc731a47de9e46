#pragma once

// Marks a function of a module that the system's loader finds by its name.
#if defined(_WIN32)
#define QUILLON_EXPORT __declspec(dllexport)
#else
#define QUILLON_EXPORT __attribute__((visibility("default")))
#endif
