// Adds the glow. The host's colors are not multiplied by their alpha: they are for the sum, and divided at the end. The
// glow makes transparent parts as opaque as it is bright.

uniform sampler2D picture;
uniform sampler2D light;
uniform float strength;     // percent

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    vec3 glow = 0.01 * strength * texture2D(light, gl_TexCoord[0].st).rgb;
    float alpha = clamp(max(color.a, max(glow.r, max(glow.g, glow.b))), 0.0, 1.0);
    gl_FragColor = vec4((color.rgb * color.a + glow) / max(alpha, 0.00001), alpha);
}
