// What is brighter than the threshold, multiplied by its alpha: the mean of two by two pixels.

uniform sampler2D picture;
uniform vec2 pictureSize;   // pixels
uniform vec2 targetSize;    // pixels
uniform float threshold;    // percent

const float MOST = 1000.0;  // an endless number in the input must not fill the frame

vec3 over(vec2 position)
{
    vec4 color = texture2D(picture, min(position, pictureSize - 0.5) / pictureSize);
    vec3 light = clamp(color.rgb, 0.0, MOST);
    float level = max(light.r, max(light.g, light.b));
    return light * max(level - 0.01 * threshold, 0.0) / max(level, 0.0001) * clamp(color.a, 0.0, 1.0);
}

void main()
{
    vec2 corner = 2.0 * floor(gl_TexCoord[0].st * targetSize) + 0.5;
    vec3 light = over(corner) + over(corner + vec2(1.0, 0.0)) + over(corner + vec2(0.0, 1.0)) + over(corner + 1.0);
    gl_FragColor = vec4(0.25 * light, 1.0);
}
