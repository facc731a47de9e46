// Runs for every pixel of the frame. Colors are plain red, green, blue, alpha; at 32 bits they may be above 1.

uniform sampler2D picture;
uniform float amount;      // percent
uniform vec4 tint;

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    float brightness = dot(color.rgb, vec3(0.2126, 0.7152, 0.0722));
    vec3 tinted = brightness * tint.rgb;
    gl_FragColor = vec4(mix(color.rgb, tinted, amount * 0.01), color.a);
}
