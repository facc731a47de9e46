// What is brighter than the threshold, at half the picture's size: the mean of two by two pixels. Colors come out
// multiplied by their alpha, so that what is transparent does not shine.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform vec2 targetSize;
uniform float threshold;

const float KNEE = 0.1;        // the threshold sets in this much below and above itself
const float MOST = 60000.0;    // a stray infinity must not fill the frame

vec3 bright(vec2 pixel)
{
    vec4 color = texture2D(picture, clamp(pixel, vec2(0.5), pictureSize - 0.5) / pictureSize);
    vec3 light = clamp(color.rgb, 0.0, MOST);
    float level = max(light.r, max(light.g, light.b));
    float over = level - threshold;
    float soft = clamp(over + KNEE, 0.0, 2.0 * KNEE);
    soft = soft * soft / (4.0 * KNEE);
    return light * (max(over, soft) / max(level, 0.0001)) * clamp(color.a, 0.0, 1.0);
}

void main()
{
    vec2 corner = 2.0 * floor(gl_TexCoord[0].st * targetSize) + 0.5;
    vec3 light = bright(corner) + bright(corner + vec2(1.0, 0.0))
               + bright(corner + vec2(0.0, 1.0)) + bright(corner + vec2(1.0, 1.0));
    gl_FragColor = vec4(0.25 * light, 1.0);
}
