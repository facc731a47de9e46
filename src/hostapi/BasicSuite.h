#pragma once

#include <cstdint>

// The suite that hands out all others. A suite is released with the name and the version that it was acquired with.

typedef std::int32_t SPErr;

// Where all suites come from. A suite is released as often as it was acquired, under the same name and version.
struct SPBasicSuite {
    SPErr (*AcquireSuite)(const char* name, std::int32_t version, const void** suite);
    SPErr (*ReleaseSuite)(const char* name, std::int32_t version);
    void* IsEqual;
    void* AllocateBlock;
    void* FreeBlock;
    void* ReallocateBlock;
    void* Undefined;
};
