// The picture with grain. Random numbers come from whole numbers below 289 squared, which floats hold exactly, so that
// every driver gives the same grain.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform float amount;       // percent
uniform float size;         // pixels
uniform float saturation;   // percent
uniform float midtones;     // percent
uniform float seed;
uniform float moment;       // milliseconds

float shuffle(float x)
{
    return mod((34.0 * x + 1.0) * x, 289.0);
}

// A number in -1 to 1 for a whole-numbered place, 0 the most often.
float random(vec2 cell, float key)
{
    vec2 low = mod(cell, 289.0);
    vec2 high = mod(floor(cell / 289.0), 289.0);
    float x = shuffle(mod(key, 289.0) + shuffle(high.x + shuffle(high.y)));
    x = shuffle(mod(x + low.x, 289.0));
    x = shuffle(mod(x + low.y, 289.0));
    float sum = 0.0;
    for (int i = 0; i < 4; ++i) {
        x = shuffle(mod(x + floor(key / 289.0) + float(i), 289.0));
        sum += x / 288.0;
    }
    return sum * 0.5 - 1.0;
}

// Grains of the wanted size: random numbers on a grid, smooth between.
float grainAt(vec2 place, float key)
{
    vec2 cell = floor(place);
    vec2 part = place - cell;
    part = part * part * (3.0 - 2.0 * part);
    float upper = mix(random(cell, key), random(cell + vec2(1.0, 0.0), key), part.x);
    float lower = mix(random(cell + vec2(0.0, 1.0), key), random(cell + vec2(1.0, 1.0), key), part.x);
    return mix(upper, lower, part.y);
}

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    vec2 place = gl_TexCoord[0].st * pictureSize / max(size, 0.25);
    float key = mod(floor(seed) * 97.0 + moment * 13.0, 83521.0);
    float gray = grainAt(place, key);
    vec3 each = vec3(grainAt(place, key + 5.0), grainAt(place, key + 11.0), grainAt(place, key + 17.0));
    vec3 grains = mix(vec3(gray), each, saturation * 0.01);

    float luma = clamp(dot(color.rgb, vec3(0.2126, 0.7152, 0.0722)), 0.0, 1.0);
    float response = mix(1.0, 4.0 * luma * (1.0 - luma), midtones * 0.01);
    gl_FragColor = vec4(color.rgb + grains * (response * amount * 0.01), color.a);
}
