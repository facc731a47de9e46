// Each pixel gets the color of its block. The picture's alpha stays.

uniform sampler2D picture;
uniform sampler2D small;
uniform vec2 pictureSize;   // pixels
uniform vec2 smallSize;     // blocks
uniform float blockSize;    // pixels a side

void main()
{
    vec2 index = min(floor(gl_TexCoord[0].st * pictureSize / blockSize), smallSize - 1.0);
    float alpha = texture2D(picture, gl_TexCoord[0].st).a;
    gl_FragColor = vec4(texture2D(small, (index + 0.5) / smallSize).rgb, alpha);
}
