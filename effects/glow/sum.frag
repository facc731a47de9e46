// One level's share of the glow, and on top of it the sum of all smaller levels, brought to twice their size.

uniform sampler2D light;
uniform sampler2D sums;
uniform vec2 atlasSize;
uniform vec4 lightRegion;   // left, bottom, width, height in pixels of the atlas
uniform vec4 sumsRegion;
uniform float weight;
uniform bool hasSums;       // false for the smallest level

vec3 smallerPixel(vec2 index)
{
    index = clamp(index, vec2(0.0), sumsRegion.zw - 1.0);
    return texture2D(sums, (sumsRegion.xy + index + 0.5) / atlasSize).rgb;
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
    vec2 index = floor(gl_TexCoord[0].st * lightRegion.zw);
    vec3 total = weight * texture2D(light, (lightRegion.xy + index + 0.5) / atlasSize).rgb;
    if (hasSums) total += enlarged(index);
    gl_FragColor = vec4(total, 1.0);
}
