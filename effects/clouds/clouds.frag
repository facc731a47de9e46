// Gradient noise in three dimensions, the third being time, summed over octaves. Random numbers are whole numbers below
// 289, which floats hold exactly, so that every driver gives the same clouds.

uniform vec2 pictureSize;
uniform float aspect;       // width of a pixel, in heights
uniform float size;         // pixels
uniform float detail;       // octaves; the last one fades in
uniform float roughness;    // percent: how much each octave has of the one before
uniform float contrast;     // percent
uniform float age;
uniform float seed;
uniform vec2 moved;         // pixels
uniform vec4 low;
uniform vec4 high;

const int MOST_OCTAVES = 8;

float shuffle(float x)
{
    return mod((34.0 * x + 1.0) * x, 289.0);
}

// The slope at a corner of the grid, along the offset from there: one of the twelve edges of a cube.
float slope(vec3 corner, vec3 offset, float key)
{
    corner = mod(corner, 289.0);
    float pick = shuffle(mod(corner.z + shuffle(mod(corner.y + shuffle(mod(corner.x + key, 289.0)), 289.0)), 289.0));
    float edge = mod(pick, 12.0);
    vec2 signs = vec2(mod(edge, 2.0), mod(floor(edge * 0.5), 2.0)) * 2.0 - 1.0;
    if (edge < 4.0) return dot(signs, offset.xy);
    if (edge < 8.0) return dot(signs, offset.xz);
    return dot(signs, offset.yz);
}

float noise(vec3 place, float key)
{
    vec3 corner = floor(place);
    vec3 part = place - corner;
    vec3 ease = part * part * part * (part * (part * 6.0 - 15.0) + 10.0);
    float sums[2];
    for (int z = 0; z < 2; ++z) {
        vec3 at = vec3(0.0, 0.0, float(z));
        float near = mix(slope(corner + at, part - at, key),
                         slope(corner + at + vec3(1.0, 0.0, 0.0), part - at - vec3(1.0, 0.0, 0.0), key), ease.x);
        float far = mix(slope(corner + at + vec3(0.0, 1.0, 0.0), part - at - vec3(0.0, 1.0, 0.0), key),
                        slope(corner + at + vec3(1.0, 1.0, 0.0), part - at - vec3(1.0, 1.0, 0.0), key), ease.x);
        sums[z] = mix(near, far, ease.y);
    }
    return mix(sums[0], sums[1], ease.z);
}

void main()
{
    vec2 place = (gl_TexCoord[0].st * pictureSize - 0.5 * pictureSize - moved) * vec2(aspect, 1.0) / max(size, 1.0);
    float sum = 0.0;
    float total = 0.0;
    float weight = 1.0;
    float scale = 1.0;
    for (int i = 0; i < MOST_OCTAVES; ++i) {
        float present = clamp(detail - float(i), 0.0, 1.0);
        if (present > 0.0) sum += present * weight * noise(vec3(place * scale, age * sqrt(scale)), mod(floor(seed) * 7.0 + float(i) * 31.0, 289.0));
        total += present * weight;
        weight *= roughness * 0.01;
        scale *= 2.0;
    }
    float light = clamp(0.5 + 0.6 * sum / total * contrast * 0.01, 0.0, 1.0);
    gl_FragColor = mix(low, high, light);
}
