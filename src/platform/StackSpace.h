#pragma once

// Non-zero when the calling thread's native stack has less than 128 KiB left. The script heap asks before every deep
// call and raises a script error instead of overflowing; hence the C name.
extern "C" int quillon_native_stack_is_low(void);
