#pragma once

// Conversions between color spaces, by value inside PF_UtilCallbacks; none is used.
struct PF_ColorCallbacks {
    void* RGBtoHLS;
    void* HLStoRGB;
    void* RGBtoYIQ;
    void* YIQtoRGB;
    void* Luminance;
    void* Hue;
    void* Lightness;
    void* Saturation;
};
