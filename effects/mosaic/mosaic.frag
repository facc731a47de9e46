// Finds the stone that has a pixel, and takes the mean of 8 by 8 places of it.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform float aspect;       // width of a pixel, in heights
uniform int shape;          // 1 squares, 2 hexagons
uniform float size;         // pixels across a stone
uniform vec2 center;        // pixels
uniform float joint;        // percent of the size
uniform vec4 jointColor;
uniform float relief;       // percent

const int TAPS = 8;
const float HALF_HEIGHT = 0.8660254;    // of a hexagon one wide across its flat sides: rows lie this far apart

// Half the way across a stone is 1 at its border; sides lie straight up and down, and at 60 degrees to that.
float borderDistance(vec2 offset)
{
    offset = abs(offset);
    if (shape == 1) return 2.0 * max(offset.x, offset.y);
    return 2.0 * max(offset.x, 0.5 * offset.x + HALF_HEIGHT * offset.y);
}

// The middle of the stone at this place; stones are 1 across.
vec2 middle(vec2 place)
{
    if (shape == 1) return floor(place + 0.5);
    vec2 rows = vec2(1.0, 2.0 * HALF_HEIGHT);
    vec2 even = floor(place / rows + 0.5) * rows;
    vec2 odd = (floor(place / rows) + 0.5) * rows;
    vec2 toEven = place - even;
    vec2 toOdd = place - odd;
    return dot(toEven, toEven) <= dot(toOdd, toOdd) ? even : odd;
}

// One pixel, its color multiplied by its alpha. The edge pixels go on outside.
vec4 pixel(vec2 position)
{
    vec2 index = clamp(floor(position), vec2(0.0), pictureSize - 1.0);
    vec4 color = texture2D(picture, (index + 0.5) / pictureSize);
    return vec4(color.rgb * color.a, color.a);
}

void main()
{
    vec2 square = vec2(aspect, 1.0);
    float across = max(size, 1.0);
    vec2 place = (gl_TexCoord[0].st * pictureSize - center) * square / across;
    vec2 stone = middle(place);
    vec2 offset = place - stone;

    vec4 sum = vec4(0.0);
    for (int y = 0; y < TAPS; ++y)
        for (int x = 0; x < TAPS; ++x) {
            vec2 tap = (vec2(float(x), float(y)) + 0.5) / float(TAPS) - 0.5;
            sum += pixel((stone + tap * 0.9) * across / square + center);
        }
    sum /= float(TAPS * TAPS);
    vec4 color = sum.a > 0.0 ? vec4(sum.rgb / sum.a, sum.a) : vec4(0.0);

    // Light comes from the top left: the stone's sides there are lighter, the others darker.
    float border = borderDistance(offset);
    color.rgb *= 1.0 - relief * 0.01 * border * border * clamp((offset.x + offset.y) * 2.0, -1.0, 1.0);

    float blur = 2.0 / across;
    float gap = joint > 0.0 ? smoothstep(1.0 - joint * 0.01 - blur, 1.0 - joint * 0.01 + blur, border) : 0.0;
    float cover = gap * jointColor.a;
    float alpha = cover + color.a * (1.0 - cover);
    vec3 mixed = jointColor.rgb * cover + color.rgb * (color.a * (1.0 - cover));
    gl_FragColor = alpha > 0.0 ? vec4(mixed / alpha, alpha) : vec4(0.0);
}
