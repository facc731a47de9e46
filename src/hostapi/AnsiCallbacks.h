#pragma once

#include "hostapi/BaseTypes.h"

// The host's own run-time library, by value inside PF_UtilCallbacks.
struct PF_ANSICallbacks {
    void* atan;
    void* atan2;
    void* ceil;
    void* cos;
    void* exp;
    void* fabs;
    void* floor;
    void* fmod;
    void* hypot;
    void* log;
    void* log10;
    void* pow;
    void* sin;
    void* sqrt;
    void* tan;
    int (*sprintf)(A_char* destination, const A_char* format, ...);
    A_char* (*strcpy)(A_char* destination, const A_char* source);
    void* asin;
    void* acos;
    A_long ansi_procs[1];  // were it a pointer, the record would be as large
};
