// Eight patches in two rows. fx.js has the same colors.

void main()
{
    vec2 index = floor(gl_TexCoord[0].st * vec2(4.0, 2.0));
    vec4 color = vec4(1.0);
    if (index.y < 0.5) {
        if (index.x < 0.5) color = vec4(1.0, 0.0, 0.0, 1.0);
        else if (index.x < 1.5) color = vec4(0.0, 1.0, 0.0, 1.0);
        else if (index.x < 2.5) color = vec4(0.0, 0.0, 1.0, 1.0);
    } else {
        if (index.x < 0.5) color = vec4(0.5, 0.5, 0.5, 1.0);
        else if (index.x < 1.5) color = vec4(1.0, 0.5, 0.0, 0.5);
        else if (index.x < 2.5) color = vec4(2.0, 2.0, 2.0, 1.0);
        else color = vec4(0.0, 0.0, 0.0, 1.0);
    }
    gl_FragColor = color;
}
