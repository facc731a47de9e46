// Folds the angle around the center into one wedge. Beyond the picture it is mirrored at its borders.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform float aspect;     // width of a pixel, in heights
uniform vec2 center;      // pixels, in the output
uniform vec2 source;      // pixels, in the picture
uniform float part;       // angle of the wedge, radians
uniform float wedge;      // radians
uniform float turn;       // radians
uniform float zoom;       // percent

// One pixel, its color multiplied by its alpha; mirrored beyond the borders.
vec4 pixel(vec2 index)
{
    vec2 twice = 2.0 * pictureSize;
    index = mod(index, twice);
    index = min(index, twice - 1.0 - index);
    vec4 color = texture2D(picture, (index + 0.5) / pictureSize);
    return vec4(color.rgb * color.a, color.a);
}

vec4 between(vec2 position)
{
    position -= 0.5;
    vec2 index = floor(position);
    vec2 part = position - index;
    vec4 upper = mix(pixel(index), pixel(index + vec2(1.0, 0.0)), part.x);
    vec4 lower = mix(pixel(index + vec2(0.0, 1.0)), pixel(index + vec2(1.0, 1.0)), part.x);
    return mix(upper, lower, part.y);
}

// Where the picture is seen at this place of the output.
vec2 folded(vec2 position)
{
    vec2 square = vec2(aspect, 1.0);
    vec2 offset = (position - center) * square;
    float radius = length(offset) * 100.0 / max(zoom, 1.0);
    float angle = radius > 0.0 ? atan(offset.x, -offset.y) - turn : 0.0;    // 0 is up
    angle = mod(angle, 2.0 * part);
    angle = min(angle, 2.0 * part - angle) + wedge;
    return source + radius * vec2(sin(angle), -cos(angle)) / square;
}

void main()
{
    vec2 position = gl_TexCoord[0].st * pictureSize;
    vec4 color = vec4(0.0);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 2; ++x)
            color += 0.25 * between(folded(position + 0.5 * vec2(float(x), float(y)) - 0.25));
    gl_FragColor = color.a > 0.0 ? vec4(color.rgb / color.a, color.a) : vec4(0.0);
}
