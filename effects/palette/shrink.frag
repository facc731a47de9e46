// The mean of a block of the picture, colors weighed by their alpha. Positions are in pixels from the top left corner.

uniform sampler2D picture;
uniform vec2 pictureSize;
uniform vec2 smallSize;
uniform float block;        // pixels a side
uniform float darkening;
uniform bool opaque;

const int LARGEST = 65;     // pixels a side that a block can touch

void main()
{
    vec2 index = floor(gl_TexCoord[0].st * smallSize);
    // The pixels whose middle is in the block; a block beyond the border's last pixel takes that one.
    vec2 first = min(ceil(index * block - 0.5), pictureSize - 1.0);
    vec2 end = min(max(ceil((index + 1.0) * block - 0.5), first + 1.0), pictureSize);

    vec4 sum = vec4(0.0);
    for (int y = 0; y < LARGEST; ++y) {
        if (first.y + float(y) >= end.y) break;
        for (int x = 0; x < LARGEST; ++x) {
            vec2 at = first + vec2(float(x), float(y));
            if (at.x >= end.x) break;
            vec4 color = texture2D(picture, (at + 0.5) / pictureSize);
            sum += vec4(color.rgb * color.a, color.a);
        }
    }

    vec3 color = sum.a > 0.0 ? sum.rgb / sum.a : vec3(0.0);
    float alpha = sum.a / ((end.x - first.x) * (end.y - first.y));
    // The reduction hands errors on without limit: colors brighter than white would bleed over half the picture.
    if (opaque) gl_FragColor = vec4(clamp(color, 0.0, 1.0) - darkening, 1.0);
    else gl_FragColor = vec4(color, alpha);
}
