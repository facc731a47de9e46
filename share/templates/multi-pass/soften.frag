// The mean of the pixels along a line. Those near the middle count most: the weights form a bell.

uniform sampler2D source;
uniform vec2 pixel;         // the way to the next pixel of the picture, in texture coordinates
uniform float radius;       // pixels of the picture

const int STEPS = 32;       // loops need a constant end

void main()
{
    vec2 place = gl_TexCoord[0].st;
    vec3 sum = texture2D(source, place).rgb;
    float total = 1.0;
    for (int i = 1; i <= STEPS; ++i) {
        float part = float(i) / float(STEPS);
        float weight = exp(-4.5 * part * part);
        vec2 way = part * radius * pixel;
        sum += weight * ( texture2D(source, place + way).rgb + texture2D(source, place - way).rgb);
        total += 2.0 * weight;
    }
    gl_FragColor = vec4(sum / total, 1.0);
}
