uniform sampler2D sInput0;

void main() {
    gl_FragColor = texture2D(sInput0, gl_TexCoord[0].st);
}
