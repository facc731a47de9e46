// The picture through the lens; fx.js says the model. Positions are in pixels from the top left corner.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform vec2 outputSize;
uniform vec2 corner;      // of the picture in the output
uniform vec2 center;      // in the picture
uniform float aspect;     // width of a pixel, in heights
uniform int shape;        // 1 barrel, 2 pincushion
uniform float k1;
uniform float k2;
uniform float scale;      // pixels of the picture for one of the output

const float STEPS = 512.0;    // positions are rounded to this part of a pixel, so that whole pixels stay whole
const int ROUNDS = 16;

// One pixel, its color multiplied by its alpha; nothing outside the picture.
vec4 pixel(vec2 index)
{
    if (any(lessThan(index, vec2(0.0))) || any(greaterThanEqual(index, pictureSize))) return vec4(0.0);
    vec4 color = texture2D(picture, (index + 0.5) / pictureSize);
    return vec4(color.rgb * color.a, color.a);
}

// Between four pixels.
vec4 between(vec2 position)
{
    position = floor(position * STEPS + 0.5) / STEPS - 0.5;
    vec2 index = floor(position);
    vec2 part = position - index;
    vec4 upper = mix(pixel(index), pixel(index + vec2(1.0, 0.0)), part.x);
    vec4 lower = mix(pixel(index + vec2(0.0, 1.0)), pixel(index + vec2(1.0, 1.0)), part.x);
    return mix(upper, lower, part.y);
}

// How far out a point at this radius of the output looks, as a factor.
float stretch(float r)
{
    float r2 = r * r;
    if (shape == 1) return 1.0 + r2 * (k1 + k2 * r2);

    // Newton's way to the s with s (1 + k1 s^2 + k2 s^4) = r. From above it comes down without ever overshooting.
    float s = r;
    for (int i = 0; i < ROUNDS; ++i) {
        float s2 = s * s;
        s -= (s * (1.0 + s2 * (k1 + k2 * s2)) - r) / (1.0 + s2 * (3.0 * k1 + 5.0 * k2 * s2));
    }
    return r > 0.0 ? s / r : 1.0;
}

void main()
{
    vec2 square = vec2(aspect, 1.0);
    float unit = 0.5 * length(pictureSize * square);
    vec2 offset = scale * (gl_TexCoord[0].st * outputSize - corner - center);
    vec2 position = center + offset * stretch(length(offset * square) / unit);

    // Where the picture gets smaller, four places of the pixel's footprint take the place of one.
    vec2 across = dFdx(position);
    vec2 down = dFdy(position);
    float spread = 0.25 * clamp(max(length(across), length(down)) - 1.0, 0.0, 1.0);
    across *= spread;
    down *= spread;
    vec4 color = 0.25 * (between(position - across - down) + between(position + across - down)
                       + between(position - across + down) + between(position + across + down));
    gl_FragColor = color.a > 0.0 ? vec4(color.rgb / color.a, color.a) : vec4(0.0);
}
