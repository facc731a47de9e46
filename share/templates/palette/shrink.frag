// The mean of 4 x 4 places of a block, colors weighed by their alpha. The reduction gets opaque pixels from 0 to 1: it
// counts alpha as a part of a color, and hands the error of a light brighter than white down half the picture.

uniform sampler2D picture;
uniform vec2 pictureSize;   // pixels
uniform vec2 smallSize;     // blocks
uniform float blockSize;    // pixels a side

const int PLACES = 4;       // a side

void main()
{
    vec2 corner = floor(gl_TexCoord[0].st * smallSize) * blockSize;
    vec4 sum = vec4(0.0);
    for (int y = 0; y < PLACES; ++y) {
        for (int x = 0; x < PLACES; ++x) {
            vec2 place = corner + (vec2(float(x), float(y)) + 0.5) / float(PLACES) * blockSize;
            vec4 color = texture2D(picture, min(floor(place) + 0.5, pictureSize - 0.5) / pictureSize);
            sum += vec4(color.rgb * color.a, color.a);
        }
    }
    gl_FragColor = vec4(clamp(sum.rgb / max(sum.a, 0.00001), 0.0, 1.0), 1.0);
}
