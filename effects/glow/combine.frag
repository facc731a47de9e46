// The glow over the picture. The host's pixels hold straight alpha: colors are multiplied by it for the sum and
// divided by it at the end. The glow makes transparent parts as opaque as it is bright.

uniform sampler2D picture;
uniform sampler2D glow;
uniform vec2 pictureSize;
uniform vec2 atlasSize;
uniform vec4 glowRegion;    // left, bottom, width, height in pixels of the atlas
uniform float intensity;
uniform vec4 tint;
uniform int mode;           // 1 add, 2 screen, 3 glow only

vec3 smallerPixel(vec2 index)
{
    index = clamp(index, vec2(0.0), glowRegion.zw - 1.0);
    return texture2D(glow, (glowRegion.xy + index + 0.5) / atlasSize).rgb;
}

// At twice the size each pixel is a quarter of a smaller one away from that one's middle.
vec3 enlarged(vec2 index)
{
    vec2 near = floor(0.5 * index);
    vec2 next = vec2(mod(index.x, 2.0) < 0.5 ? -1.0 : 1.0, mod(index.y, 2.0) < 0.5 ? -1.0 : 1.0);
    return 0.5625 * smallerPixel(near) + 0.0625 * smallerPixel(near + next)
         + 0.1875 * (smallerPixel(near + vec2(next.x, 0.0)) + smallerPixel(near + vec2(0.0, next.y)));
}

void main()
{
    vec2 index = floor(gl_TexCoord[0].st * pictureSize);
    vec3 light = intensity * tint.rgb * enlarged(index);

    vec4 color = texture2D(picture, (index + 0.5) / pictureSize);
    if (mode == 3) color = vec4(0.0);
    vec3 base = color.rgb * color.a;
    if (mode == 2) light *= 1.0 - clamp(base, 0.0, 1.0);

    float cover = clamp(max(light.r, max(light.g, light.b)), 0.0, 1.0);
    float alpha = color.a + (1.0 - color.a) * cover;
    gl_FragColor = alpha > 0.0 ? vec4((base + light) / alpha, alpha) : vec4(0.0);
}
