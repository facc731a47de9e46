// Halves a region of the atlas along one axis, with a bell of six pixels that also blurs.

uniform sampler2D source;
uniform vec2 atlasSize;
uniform vec4 region;      // left, bottom, width, height in pixels of the atlas
uniform vec2 axis;        // (1, 0) or (0, 1)
uniform vec2 targetSize;

vec3 pixel(vec2 position)
{
    position = clamp(position, vec2(0.5), region.zw - 0.5);
    return texture2D(source, (region.xy + position) / atlasSize).rgb;
}

void main()
{
    vec2 index = floor(gl_TexCoord[0].st * targetSize);
    vec2 middle = index * (1.0 + axis) + 0.5 + 0.5 * axis;
    vec3 light = 10.0 * (pixel(middle - 0.5 * axis) + pixel(middle + 0.5 * axis))
               + 5.0 * (pixel(middle - 1.5 * axis) + pixel(middle + 1.5 * axis))
               + pixel(middle - 2.5 * axis) + pixel(middle + 2.5 * axis);
    gl_FragColor = vec4(light / 32.0, 1.0);
}
