#include "hostapi/LayoutCheck.h"

// Controls and their values.

#ifndef QUILLON_VENDOR_HEADERS

CHECK_SIZE(PF_ParamDef, 176);
CHECK_FIELD(PF_ParamDef, uu, 0, 4);
CHECK_FIELD(PF_ParamDef, ui_flags, 4, 4);
CHECK_FIELD(PF_ParamDef, ui_width, 8, 2);
CHECK_FIELD(PF_ParamDef, ui_height, 10, 2);
CHECK_FIELD(PF_ParamDef, param_type, 12, 4);
CHECK_FIELD(PF_ParamDef, name, 16, 32);
CHECK_FIELD(PF_ParamDef, flags, 48, 4);
CHECK_FIELD(PF_ParamDef, unused, 52, 4);
CHECK_FIELD(PF_ParamDef, u, 56, 120);

CHECK_SIZE(PF_ParamDefUnion, 120);

CHECK_SIZE(PF_SliderDef, 88);
CHECK_FIELD(PF_SliderDef, value, 0, 4);
CHECK_FIELD(PF_SliderDef, value_str, 4, 32);
CHECK_FIELD(PF_SliderDef, value_desc, 36, 32);
CHECK_FIELD(PF_SliderDef, valid_min, 68, 4);
CHECK_FIELD(PF_SliderDef, valid_max, 72, 4);
CHECK_FIELD(PF_SliderDef, slider_min, 76, 4);
CHECK_FIELD(PF_SliderDef, slider_max, 80, 4);
CHECK_FIELD(PF_SliderDef, dephault, 84, 4);

CHECK_SIZE(PF_FixedSliderDef, 92);
CHECK_FIELD(PF_FixedSliderDef, value, 0, 4);
CHECK_FIELD(PF_FixedSliderDef, value_str, 4, 32);
CHECK_FIELD(PF_FixedSliderDef, value_desc, 36, 32);
CHECK_FIELD(PF_FixedSliderDef, valid_min, 68, 4);
CHECK_FIELD(PF_FixedSliderDef, valid_max, 72, 4);
CHECK_FIELD(PF_FixedSliderDef, slider_min, 76, 4);
CHECK_FIELD(PF_FixedSliderDef, slider_max, 80, 4);
CHECK_FIELD(PF_FixedSliderDef, dephault, 84, 4);
CHECK_FIELD(PF_FixedSliderDef, precision, 88, 2);
CHECK_FIELD(PF_FixedSliderDef, display_flags, 90, 2);

CHECK_SIZE(PF_AngleDef, 16);
CHECK_FIELD(PF_AngleDef, value, 0, 4);
CHECK_FIELD(PF_AngleDef, dephault, 4, 4);
CHECK_FIELD(PF_AngleDef, valid_min, 8, 4);
CHECK_FIELD(PF_AngleDef, valid_max, 12, 4);

CHECK_SIZE(PF_CheckBoxDef, 16);
CHECK_FIELD(PF_CheckBoxDef, value, 0, 4);
CHECK_FIELD(PF_CheckBoxDef, dephault, 4, 1);
CHECK_FIELD(PF_CheckBoxDef, reserved, 5, 1);
CHECK_FIELD(PF_CheckBoxDef, reserved1, 6, 2);
CHECK_FIELD(PF_CheckBoxDef, u, 8, 8);

CHECK_SIZE(PF_ColorDef, 8);
CHECK_FIELD(PF_ColorDef, value, 0, 4);
CHECK_FIELD(PF_ColorDef, dephault, 4, 4);

CHECK_SIZE(PF_PointDef, 20);
CHECK_FIELD(PF_PointDef, x_value, 0, 4);
CHECK_FIELD(PF_PointDef, y_value, 4, 4);
CHECK_FIELD(PF_PointDef, reserved, 8, 3);
CHECK_FIELD(PF_PointDef, restrict_bounds, 11, 1);
CHECK_FIELD(PF_PointDef, x_dephault, 12, 4);
CHECK_FIELD(PF_PointDef, y_dephault, 16, 4);

CHECK_SIZE(PF_PopupDef, 16);
CHECK_FIELD(PF_PopupDef, value, 0, 4);
CHECK_FIELD(PF_PopupDef, num_choices, 4, 2);
CHECK_FIELD(PF_PopupDef, dephault, 6, 2);
CHECK_FIELD(PF_PopupDef, u, 8, 8);

CHECK_SIZE(PF_FloatSliderDef, 88);
CHECK_FIELD(PF_FloatSliderDef, value, 0, 8);
CHECK_FIELD(PF_FloatSliderDef, phase, 8, 8);
CHECK_FIELD(PF_FloatSliderDef, value_desc, 16, 32);
CHECK_FIELD(PF_FloatSliderDef, valid_min, 48, 4);
CHECK_FIELD(PF_FloatSliderDef, valid_max, 52, 4);
CHECK_FIELD(PF_FloatSliderDef, slider_min, 56, 4);
CHECK_FIELD(PF_FloatSliderDef, slider_max, 60, 4);
CHECK_FIELD(PF_FloatSliderDef, dephault, 64, 4);
CHECK_FIELD(PF_FloatSliderDef, precision, 68, 2);
CHECK_FIELD(PF_FloatSliderDef, display_flags, 70, 2);
CHECK_FIELD(PF_FloatSliderDef, fs_flags, 72, 4);
CHECK_FIELD(PF_FloatSliderDef, curve_tolerance, 76, 4);
CHECK_FIELD(PF_FloatSliderDef, useExponent, 80, 1);
CHECK_FIELD(PF_FloatSliderDef, exponent, 84, 4);

CHECK_SIZE(PF_ArbitraryDef, 32);
CHECK_FIELD(PF_ArbitraryDef, id, 0, 2);
CHECK_FIELD(PF_ArbitraryDef, pad, 2, 2);
CHECK_FIELD(PF_ArbitraryDef, dephault, 8, 8);
CHECK_FIELD(PF_ArbitraryDef, value, 16, 8);
CHECK_FIELD(PF_ArbitraryDef, refconPV, 24, 8);

CHECK_SIZE(PF_PathDef, 12);
CHECK_FIELD(PF_PathDef, path_id, 0, 4);
CHECK_FIELD(PF_PathDef, reserved0, 4, 4);
CHECK_FIELD(PF_PathDef, dephault, 8, 4);

CHECK_SIZE(PF_ButtonDef, 16);
CHECK_FIELD(PF_ButtonDef, value, 0, 4);
CHECK_FIELD(PF_ButtonDef, u, 8, 8);

CHECK_SIZE(PF_Point3DDef, 64);
CHECK_FIELD(PF_Point3DDef, x_value, 0, 8);
CHECK_FIELD(PF_Point3DDef, y_value, 8, 8);
CHECK_FIELD(PF_Point3DDef, z_value, 16, 8);
CHECK_FIELD(PF_Point3DDef, x_dephault, 24, 8);
CHECK_FIELD(PF_Point3DDef, y_dephault, 32, 8);
CHECK_FIELD(PF_Point3DDef, z_dephault, 40, 8);
CHECK_FIELD(PF_Point3DDef, reserved, 48, 16);

#endif
