// Nine places on the line to the center, each weighed for red, green and blue: red looks further in, blue further out.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform float aspect;     // width of a pixel, in heights
uniform vec2 center;      // pixels
uniform float spread;     // pixels, at the far corner
uniform float darken;     // percent; below 0 the corners get brighter
uniform float reach;      // percent of the way to the corner
uniform float soft;       // percent

const int STEPS = 4;      // to each side

// One pixel, its color multiplied by its alpha. The edge pixels go on outside.
vec4 pixel(vec2 index)
{
    index = clamp(index, vec2(0.0), pictureSize - 1.0);
    vec4 color = texture2D(picture, (index + 0.5) / pictureSize);
    return vec4(color.rgb * color.a, color.a);
}

vec4 between(vec2 position)
{
    position -= 0.5;
    vec2 index = floor(position + 1.0 / 1024.0);
    vec2 part = max(position - index, vec2(0.0));
    vec4 upper = mix(pixel(index), pixel(index + vec2(1.0, 0.0)), part.x);
    vec4 lower = mix(pixel(index + vec2(0.0, 1.0)), pixel(index + vec2(1.0, 1.0)), part.x);
    return mix(upper, lower, part.y);
}

void main()
{
    vec2 square = vec2(aspect, 1.0);
    vec2 position = gl_TexCoord[0].st * pictureSize;
    vec2 offset = position - center;
    vec2 farthest = max(center, pictureSize - center);
    float radius = length(offset * square) / max(length(farthest * square), 1.0);
    vec2 shift = length(offset) > 0.0 ? normalize(offset) * (spread * radius * radius) : vec2(0.0);

    vec4 sum = vec4(0.0);
    vec4 weights = vec4(0.0);
    for (int i = -STEPS; i <= STEPS; ++i) {
        float place = float(i) / float(STEPS);
        vec4 weight = vec4(max(-place, 0.0), 1.0 - abs(place), max(place, 0.0), 1.0);
        sum += between(position + shift * place) * weight;
        weights += weight;
    }
    vec4 color = sum / weights;

    float start = reach * 0.01;
    float edge = smoothstep(start, start + soft * 0.01, radius);
    float light = 1.0 - edge * darken * 0.01;
    gl_FragColor = color.a > 0.0 ? vec4(color.rgb / color.a * light, color.a) : vec4(0.0);
}
