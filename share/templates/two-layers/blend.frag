// The other layer over the picture, stretched to its size. Both have colors that are not multiplied by their alpha.

uniform sampler2D picture;
uniform sampler2D other;
uniform int mode;           // 1 normal, 2 add, 3 multiply, 4 screen
uniform float opacity;      // percent

void main()
{
    vec4 below = texture2D(picture, gl_TexCoord[0].st);
    vec4 above = texture2D(other, gl_TexCoord[0].st);
    above.a *= 0.01 * opacity;

    vec3 mixed = above.rgb;
    if (mode == 2) mixed = below.rgb + above.rgb;
    if (mode == 3) mixed = below.rgb * above.rgb;
    if (mode == 4) mixed = below.rgb + above.rgb - min(below.rgb, 1.0) * min(above.rgb, 1.0);

    // Where both are there the mixed color, elsewhere each its own.
    float alpha = above.a + below.a * (1.0 - above.a);
    vec3 sum = mixed * above.a * below.a + above.rgb * above.a * (1.0 - below.a) + below.rgb * below.a * (1.0 - above.a);
    gl_FragColor = vec4(sum / max(alpha, 0.00001), alpha);
}
