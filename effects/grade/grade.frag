// One pixel after the other: exposure and white balance as gains, contrast as a power around the pivot, then
// saturation and the tints of shadows and lights. Neutral settings give the picture itself.

uniform sampler2D picture;
uniform float exposure;     // stops
uniform float warmth;       // -100 to 100
uniform float magenta;      // -100 to 100
uniform float contrast;     // percent
uniform float pivot;
uniform float saturation;   // percent
uniform vec4 shadows;
uniform vec4 lights;
uniform float strength;     // percent

const vec3 LUMA = vec3(0.2126, 0.7152, 0.0722);
const float GRAY = 128.0 / 255.0;

// A power that goes on below 0 as its mirror image.
vec3 signedPower(vec3 base, float exponent)
{
    return sign(base) * pow(abs(base), vec3(exponent));
}

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    vec3 value = color.rgb * exp2(exposure);

    // Gains that leave the brightness of gray as it is.
    vec3 gain = exp2(vec3(warmth + magenta * 0.5, -magenta, -warmth + magenta * 0.5) * 0.005);
    value *= gain / dot(gain, LUMA);

    if (contrast != 100.0) value = pivot * signedPower(value / pivot, contrast * 0.01);

    float luma = dot(value, LUMA);
    value = mix(vec3(luma), value, saturation * 0.01);

    float bright = smoothstep(0.0, 1.0, luma);
    vec3 tint = mix(shadows.rgb, lights.rgb, bright) - GRAY;
    tint -= dot(tint, LUMA);
    value += tint * (strength * 0.01) * min(max(luma, 0.0) * 4.0 + 0.1, 1.0);

    gl_FragColor = vec4(value, color.a);
}
