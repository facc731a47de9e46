// The matte is stretched over the picture.

uniform sampler2D picture;
uniform sampler2D matte;
uniform bool isChosen;      // whether there is a layer
uniform vec2 pixel;         // size of a pixel, in texture coordinates
uniform int channel;        // 1 brightness, 2 alpha, 3 red, 4 green, 5 blue
uniform float black;        // percent
uniform float white;        // percent
uniform float soften;       // pixels
uniform bool invert;
uniform int mode;           // 1 multiply, 2 replace

const int RINGS = 4;
const int RAYS = 12;

float valueAt(vec2 place)
{
    vec4 color = texture2D(matte, place);
    if (channel == 2) return color.a;
    if (channel == 3) return color.r * color.a;
    if (channel == 4) return color.g * color.a;
    if (channel == 5) return color.b * color.a;
    return dot(color.rgb, vec3(0.2126, 0.7152, 0.0722)) * color.a;
}

void main()
{
    vec2 place = gl_TexCoord[0].st;
    float value = valueAt(place);
    if (soften > 0.0) {
        float total = 1.0;
        for (int ring = 1; ring <= RINGS; ++ring) {
            float part = float(ring) / float(RINGS);
            float weight = part * exp(-2.0 * part * part) * 4.0;
            for (int ray = 0; ray < RAYS; ++ray) {
                float angle = (float(ray) + 0.5 * float(ring)) * (6.2831853 / float(RAYS));
                value += weight * valueAt(place + soften * part * vec2(cos(angle), sin(angle)) * pixel);
                total += weight;
            }
        }
        value /= total;
    }
    value = clamp((value - black * 0.01) / max((white - black) * 0.01, 0.0001), 0.0, 1.0);
    if (invert) value = 1.0 - value;

    vec4 color = texture2D(picture, place);
    if (!isChosen) value = mode == 1 ? 1.0 : color.a;
    gl_FragColor = vec4(color.rgb, mode == 1 ? color.a * value : value);
}
