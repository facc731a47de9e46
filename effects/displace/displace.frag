// The picture with its pixels moved by the map; fx.js says the rule. Positions are in pixels from the top left corner.

uniform sampler2D picture;
uniform sampler2D map;
uniform vec2 pictureSize;
uniform vec2 mapSize;
uniform float neutral;     // the map's value that moves nothing
uniform int placement;     // 1 stretched over the picture, 2 on its center, 3 tiled from its corner
uniform int channelX;      // 1 red, 2 green, 3 blue, 4 luminance
uniform int channelY;
uniform float amountX;     // pixels
uniform float amountY;
uniform int edge;          // 1 transparent, 2 repeat pixels, 3 wrap around, 4 mirror

const float STEPS = 512.0;    // positions are rounded to this part of a pixel, so that whole pixels stay whole

// One pixel, its color multiplied by its alpha; beyond the picture as the edges are to be.
vec4 pixel(vec2 index)
{
    bool outside = any(lessThan(index, vec2(0.0))) || any(greaterThanEqual(index, pictureSize));
    if (outside && edge == 1) return vec4(0.0);
    if (edge == 3) index = mod(index, pictureSize);
    if (edge == 4) {
        index = mod(index, 2.0 * pictureSize);
        index = min(index, 2.0 * pictureSize - 1.0 - index);
    }
    index = clamp(index, vec2(0.0), pictureSize - 1.0);
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

float valueOf(vec4 color, int channel)
{
    if (channel == 1) return color.r;
    if (channel == 2) return color.g;
    if (channel == 3) return color.b;
    return dot(color.rgb, vec3(0.2126, 0.7152, 0.0722));
}

// How far the pixel at this position moves, from -1 to 1 each way.
vec2 shift(vec2 position)
{
    vec2 place = position / pictureSize;
    if (placement == 2) place = (position - 0.5 * pictureSize) / mapSize + 0.5;
    if (placement == 3) place = position / mapSize;
    if (placement == 2 && (any(lessThan(place, vec2(0.0))) || any(greaterThan(place, vec2(1.0))))) return vec2(0.0);

    vec4 color = texture2D(map, place);
    vec2 value = vec2(valueOf(color, channelX), valueOf(color, channelY));
    return 2.0 * (value - neutral) * clamp(color.a, 0.0, 1.0);
}

void main()
{
    vec2 position = gl_TexCoord[0].st * pictureSize;
    vec4 color = between(position - shift(position) * vec2(amountX, amountY));
    gl_FragColor = color.a > 0.0 ? vec4(color.rgb / color.a, color.a) : vec4(0.0);
}
