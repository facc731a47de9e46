// The slope of the picture at the pen's width (Sobel's weights), turned into ink.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform float width;        // pixels
uniform float threshold;    // percent of a step from black to white
uniform float softness;     // percent
uniform vec4 inkColor;
uniform int ground;         // 1 paper, 2 picture, 3 nothing
uniform vec4 paper;
uniform float wash;         // percent

// One pixel, its color multiplied by its alpha. The edge pixels go on outside: the frame itself is no edge.
vec4 pixel(vec2 index)
{
    index = clamp(index, vec2(0.0), pictureSize - 1.0);
    vec4 color = texture2D(picture, (index + 0.5) / pictureSize);
    return vec4(color.rgb * color.a, color.a);
}

vec4 between(vec2 position)
{
    position -= 0.5;
    vec2 index = floor(position);
    vec2 part = position - index;
    vec4 upper = mix(pixel(index), pixel(index + vec2(1.0, 0.0)), part.x);
    vec4 lower = mix(pixel(index + vec2(0.0, 1.0)), pixel(index + vec2(1.0, 1.0)), part.x);
    return mix(upper, lower, part.y);
}

void main()
{
    vec2 position = gl_TexCoord[0].st * pictureSize;
    float reach = max(width * 0.5, 0.25);
    vec4 across = vec4(0.0);
    vec4 down = vec4(0.0);
    for (int i = -1; i <= 1; ++i) {
        float weight = i == 0 ? 2.0 : 1.0;
        float along = float(i) * reach;
        across += weight * (between(position + vec2(reach, along)) - between(position + vec2(-reach, along)));
        down += weight * (between(position + vec2(along, reach)) - between(position + vec2(along, -reach)));
    }
    vec4 slope = sqrt(across * across + down * down) * 0.25;
    float edge = max(max(slope.r, slope.g), max(slope.b, slope.a));
    float limit = threshold * 0.01;
    float line = smoothstep(limit, limit + softness * 0.01, edge) * inkColor.a;

    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    vec4 below = vec4(0.0);
    if (ground == 1) below = vec4(mix(paper.rgb, color.rgb, wash * 0.01 * color.a), 1.0);
    if (ground == 2) below = color;
    float alpha = line + below.a * (1.0 - line);
    vec3 mixed = inkColor.rgb * line + below.rgb * (below.a * (1.0 - line));
    gl_FragColor = alpha > 0.0 ? vec4(mixed / alpha, alpha) : vec4(0.0);
}
