// The brighter of the picture and what is left of the frame before, channel by channel. The memory holds colors that are
// multiplied by their alpha; those of the host are not.

uniform sampler2D picture;
uniform sampler2D before;
uniform float strength;     // of what is left; 0: there is no frame before
uniform float rise;         // heights of the picture

const float MOST = 1000.0;  // an endless number in the input must not stay for good

void main()
{
    vec2 place = gl_TexCoord[0].st;
    vec4 color = texture2D(picture, place);
    color.rgb *= color.a;
    gl_FragColor = color;

    vec2 from = place + vec2(0.0, rise);    // y runs down
    if (strength <= 0.0 || from.y > 1.0) return;
    vec4 old = texture2D(before, from);
    if (dot(old, old) < MOST * MOST) gl_FragColor = max(color, strength * old);
}
