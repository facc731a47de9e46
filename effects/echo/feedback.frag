// The picture together with what the frame before has left. Positions are in pixels from the top left corner.

uniform sampler2D picture;
uniform sampler2D trail;
uniform vec2 pictureSize;
uniform vec2 center;
uniform float aspect;       // width of a pixel, in heights
uniform vec2 back;          // cosine and sine of the turn, over the zoom
uniform float strength;     // of the trail; 0 when there is none, and then nothing of it is read
uniform int mode;           // 1 below the picture, 2 above it, 3 the brighter of both

const float MOST = 1e30;
const float STEPS = 512.0;  // positions are rounded to this part of a pixel, so that whole pixels stay whole

// One pixel of the trail, its color multiplied by its alpha; nothing outside the picture.
vec4 pixel(vec2 index)
{
    if (any(lessThan(index, vec2(0.0))) || any(greaterThanEqual(index, pictureSize))) return vec4(0.0);
    vec4 color = texture2D(trail, (index + 0.5) / pictureSize);
    if (!(dot(color, color) < MOST)) return vec4(0.0);  // endless or no number: it would never fade, and spread
    return vec4(color.rgb * color.a, color.a);
}

// Between four pixels.
vec4 between(vec2 position)
{
    position = floor(position * STEPS + 0.5) / STEPS - 0.5;
    vec2 index = floor(position);
    vec2 part = position - index;
    vec4 upper = mix(pixel(index), pixel(index + vec2(1.0, 0.0)), part.x);
    vec4 lower = mix(pixel(index + vec2(0.0, 1.0)), pixel(index + vec2(1.0, 1.0)), part.x);
    return mix(upper, lower, part.y);
}

void main()
{
    vec2 position = gl_TexCoord[0].st * pictureSize;
    vec4 color = texture2D(picture, (floor(position) + 0.5) / pictureSize);
    gl_FragColor = color;
    if (strength <= 0.0) return;

    vec2 offset = (position - center) * vec2(aspect, 1.0);
    offset = vec2(back.x * offset.x + back.y * offset.y, back.x * offset.y - back.y * offset.x);
    vec4 old = strength * between(center + offset / vec2(aspect, 1.0));
    if (old.a <= 0.0) return;

    vec4 now = vec4(color.rgb * color.a, color.a);
    vec4 both = max(now, old);
    if (mode == 1) both = now + old * (1.0 - now.a);
    if (mode == 2) both = old + now * (1.0 - old.a);
    gl_FragColor = vec4(both.rgb / both.a, both.a);
}
