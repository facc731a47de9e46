#pragma once

#include <cstdint>

// The suite that hands out all others. A suite is released with the name and the version that it was acquired with.

typedef std::int32_t SPErr;

struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version);
    void* IsEqual;
    void* AllocateBlock;
    void* FreeBlock;
    void* ReallocateBlock;
    void* Undefined;
};
