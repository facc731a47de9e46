// One pass of one ray: the light of four places against its direction, each weaker than the one before. The last pass of
// a ray adds the rays before it.

uniform sampler2D source;
uniform sampler2D sum;
uniform float sumWeight;    // 0 or 1
uniform vec2 roomSize;
uniform vec2 frameSize;
uniform vec2 stride;        // pixels
uniform float fade;         // from one place to the next

// One pixel of the frame's part; nothing outside.
vec4 pixel(vec2 index)
{
    if (any(lessThan(index, vec2(0.0))) || any(greaterThanEqual(index, frameSize))) return vec4(0.0);
    return texture2D(source, (index + 0.5) / roomSize);
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
    vec2 position = gl_TexCoord[0].st * frameSize;
    vec4 light = vec4(0.0);
    float weight = 1.0;
    float total = 0.0;
    for (int i = 0; i < 4; ++i) {
        light += weight * between(position - stride * float(i));
        total += weight;
        weight *= fade;
    }
    vec4 before = sumWeight > 0.0 ? texture2D(sum, position / roomSize) : vec4(0.0);
    // Less than the whole weight is taken away, so that small lights make visible rays.
    gl_FragColor = light / pow(total, 0.85) + before;
}
