#pragma once

#include "hostapi/BaseTypes.h"

// What an effect says about its own drawing when it registers for events.

typedef A_long PF_UIAlignment;

enum : A_long { PF_UIAlignment_NONE = 0 };

enum : A_long {
    PF_CustomEFlag_NONE = 0,
    PF_CustomEFlag_COMP = 1,
    PF_CustomEFlag_LAYER = 2,
    PF_CustomEFlag_EFFECT = 4,
    PF_CustomEFlag_PREVIEW = 8
};

// What register_ui takes: which windows send events, and how large the custom areas are.
struct PF_CustomUIInfo {
    A_long reserved;
    A_long events;  // PF_CustomEFlag_
    A_long comp_ui_width;
    A_long comp_ui_height;
    PF_UIAlignment comp_ui_alignment;
    A_long layer_ui_width;
    A_long layer_ui_height;
    PF_UIAlignment layer_ui_alignment;
    A_long preview_ui_width;
    A_long preview_ui_height;
    PF_UIAlignment preview_ui_alignment;
};
