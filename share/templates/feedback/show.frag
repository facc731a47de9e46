// The memory as the host wants it: with colors that are not multiplied by their alpha.

uniform sampler2D memory;

void main()
{
    vec4 color = texture2D(memory, gl_TexCoord[0].st);
    gl_FragColor = vec4(color.rgb / max(color.a, 0.00001), color.a);
}
