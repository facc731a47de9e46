// The mean of the pixels along a line. Those near the middle count most: the weights form a bell.

uniform sampler2D source;   // multiplied by alpha
uniform vec2 pixel;         // the way to the next pixel of the line, in texture coordinates
uniform float radius;       // pixels
uniform bool divides;       // gives the host colors that are not multiplied by alpha

const int STEPS = 32;       // loops need a constant end

void main()
{
    vec2 place = gl_TexCoord[0].st;
    vec4 sum = texture2D(source, place);
    float total = 1.0;
    for (int i = 1; i <= STEPS; ++i) {
        float part = float(i) / float(STEPS);
        float weight = exp(-4.5 * part * part);
        vec2 way = part * radius * pixel;
        sum += weight * ( texture2D(source, place + way) + texture2D(source, place - way));
        total += 2.0 * weight;
    }
    sum /= total;
    if (divides) sum.rgb /= max(sum.a, 0.00001);
    gl_FragColor = sum;
}
