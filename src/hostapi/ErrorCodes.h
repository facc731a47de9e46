#pragma once

#include "hostapi/BaseTypes.h"

// Enumerators, here as in the vendor's headers: `throw PF_Err_BAD_CALLBACK_PARAM` throws no int. Throw `int{...}` where
// a handler for int is to get it.

// What callbacks give and selectors answer; 0 is success.
enum : PF_Err {
    PF_Err_NONE = 0,
    PF_Err_OUT_OF_MEMORY = 4,
    PF_Err_INTERNAL_STRUCT_DAMAGED = 512,
    PF_Err_INVALID_INDEX = 513,
    PF_Err_UNRECOGNIZED_PARAM_TYPE = 514,
    PF_Err_INVALID_CALLBACK = 515,
    PF_Err_BAD_CALLBACK_PARAM = 516,
    PF_Interrupt_CANCEL = 517
};

// The same, of the suites for extensions.
enum : A_Err {
    A_Err_NONE = 0,
    A_Err_GENERIC = 1,
    A_Err_STRUCT = 2,
    A_Err_PARAMETER = 3,
    A_Err_ALLOC = 4,
    A_Err_MISSING_SUITE = 13
};
