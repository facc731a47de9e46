// Each ink has a grid of round dots, turned by its own angle. A dot is as large as the ink that its place needs.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform float aspect;       // width of a pixel, in heights
uniform int inks;           // 1 four inks, 2 black
uniform float size;         // pixels from dot to dot
uniform float angle;        // degrees
uniform float softness;     // percent
uniform float gain;         // percent
uniform vec4 paper;

const int TAPS = 3;         // places of a dot's cell that are looked at, to each side

// The mean of the cell around a position, on white where the picture is transparent.
vec3 mean(vec2 position)
{
    vec3 sum = vec3(0.0);
    for (int y = 0; y < TAPS; ++y)
        for (int x = 0; x < TAPS; ++x) {
            vec2 tap = (vec2(float(x), float(y)) + 0.5) / float(TAPS) - 0.5;
            vec2 index = clamp(floor(position + tap * size * 0.8), vec2(0.0), pictureSize - 1.0);
            vec4 color = texture2D(picture, (index + 0.5) / pictureSize);
            sum += mix(vec3(1.0), clamp(color.rgb, 0.0, 1.0), color.a);
        }
    return sum / float(TAPS * TAPS);
}

// How much of an ink the color needs: the black that all three share is printed in black.
float need(vec3 color, int ink)
{
    float black = 1.0 - max(color.r, max(color.g, color.b));
    if (inks == 2) return 1.0 - dot(color, vec3(0.2126, 0.7152, 0.0722));
    if (ink == 3) return black;
    float channel = ink == 0 ? color.r : (ink == 1 ? color.g : color.b);
    return black < 1.0 ? (1.0 - channel - black) / (1.0 - black) : 0.0;
}

// The ink at a position, 0 to 1. The dots of the cell and of its neighbors may reach it.
float printed(vec2 position, int ink, float degrees)
{
    vec2 square = vec2(aspect, 1.0);
    float turned = radians(angle + degrees);
    mat2 turn = mat2(cos(turned), sin(turned), -sin(turned), cos(turned));
    vec2 place = turn * (position * square) / size;
    vec2 cell = floor(place);
    float cover = 0.0;
    for (int y = -1; y <= 1; ++y)
        for (int x = -1; x <= 1; ++x) {
            vec2 middle = cell + vec2(float(x), float(y)) + 0.5;
            float amount = clamp(need(mean(middle * turn * size / square), ink) + gain * 0.01, 0.0, 1.0);
            // A cell is full when the dot reaches its corners.
            float radius = sqrt(amount) * 0.7072;
            float blur = max(0.5 / size, softness * 0.0025);
            if (amount > 0.0) cover = max(cover, 1.0 - smoothstep(radius - blur, radius + blur, distance(place, middle)));
        }
    return cover;
}

void main()
{
    vec2 position = gl_TexCoord[0].st * pictureSize;
    vec3 color = paper.rgb;
    if (inks == 2) {
        color *= 1.0 - printed(position, 3, 45.0) * 0.94;
    } else {
        color *= 1.0 - printed(position, 0, 15.0) * vec3(1.0, 0.32, 0.08);
        color *= 1.0 - printed(position, 1, 75.0) * vec3(0.08, 0.95, 0.45);
        color *= 1.0 - printed(position, 2, 0.0) * vec3(0.0, 0.06, 0.95);
        color *= 1.0 - printed(position, 3, 45.0) * 0.9;
    }
    gl_FragColor = vec4(color, paper.a);
}
