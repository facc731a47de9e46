// The host's colors are not multiplied by their alpha. Before pixels are mixed they must be, or the hidden colors of
// transparent pixels bleed in.

uniform sampler2D picture;

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    gl_FragColor = vec4(color.rgb * color.a, color.a);
}
