#pragma once

#include <cstddef>

#include "hostapi/HostApi.h"

// The words of the Layout*.cpp files, which hold this folder's own records to the hosts' layout. They hold on every
// 64-bit system; under the vendor's headers there is nothing to hold to, and the files are empty.

#define CHECK_SIZE(record, size) static_assert(sizeof(record) == (size), "size of " #record)

#define CHECK_FIELD(record, field, offset, width)                                        \
    static_assert(offsetof(record, field) == (offset), "offset of " #record "." #field); \
    static_assert(sizeof(record::field) == (width), "width of " #record "." #field)

// A function's or an object's pointer at its place in a table of pointers.
#define CHECK_ENTRY(table, entry, index) CHECK_FIELD(table, entry, 8 * (index), 8)
