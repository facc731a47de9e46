// Soft stripes across a direction, from the middle of the frame.

uniform vec2 size;          // of the frame, in pixels
uniform float aspect;       // width of a pixel, in heights
uniform vec2 way;           // direction in which the stripes follow each other, of length 1; y runs down
uniform float spacing;      // pixels
uniform float moved;        // stripes
uniform vec4 first;
uniform vec4 second;

void main()
{
    vec2 place = (gl_TexCoord[0].st - 0.5) * size * vec2(aspect, 1.0);
    float stripe = dot(place, way) / max(spacing, 1.0) - moved;
    gl_FragColor = mix(first, second, 0.5 + 0.5 * cos(6.2831853 * stripe));
}
