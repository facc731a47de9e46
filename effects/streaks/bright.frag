// What is brighter than the threshold. Colors come out multiplied by their alpha.

uniform sampler2D picture;
uniform float threshold;
uniform vec2 roomSize;
uniform vec2 frameSize;

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    float peak = max(color.r, max(color.g, color.b));
    float kept = peak > 0.0 ? max(peak - threshold, 0.0) / peak : 0.0;
    gl_FragColor = vec4(color.rgb * (color.a * kept), color.a * min(kept, 1.0));
}
