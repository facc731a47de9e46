// One character of the font, or for a blank only the paper. A file of the font has 16 x 6 of them, from the blank on.

uniform sampler2D font;
uniform float code;     // from 0
uniform vec4 ink;
uniform vec4 paper;

void main()
{
    vec2 cell = vec2(mod(code, 16.0), floor(code / 16.0));
    float isInk = texture2D(font, (cell + gl_TexCoord[0].st) / vec2(16.0, 6.0)).r;
    gl_FragColor = isInk > 0.5 ? ink : paper;
}
