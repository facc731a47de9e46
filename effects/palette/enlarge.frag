// The blocks at the picture's size: the reduced colors, and the alpha that the reduction did not see.

uniform sampler2D small;
uniform sampler2D reduced;
uniform vec2 pictureSize;
uniform vec2 smallSize;
uniform float block;

void main()
{
    vec2 position = gl_TexCoord[0].st * pictureSize;
    vec2 at = (min(floor(position / block), smallSize - 1.0) + 0.5) / smallSize;
    gl_FragColor = vec4(texture2D(reduced, at).rgb, texture2D(small, at).a);
}
