// The rays over the picture. Light is added; where the picture is transparent, it becomes visible.

uniform sampler2D picture;
uniform sampler2D glare;
uniform vec2 roomSize;
uniform vec2 frameSize;
uniform float intensity;
uniform vec4 tint;

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    vec4 light = texture2D(glare, gl_TexCoord[0].st * frameSize / roomSize) * intensity;
    vec3 sum = color.rgb * color.a + light.rgb * tint.rgb;
    float alpha = clamp(color.a + light.a * (1.0 - color.a), 0.0, 1.0);
    gl_FragColor = alpha > 0.0 ? vec4(sum / alpha, alpha) : vec4(0.0);
}
