// The sheet in the top left corner, at whole pixels, over a dim picture.

uniform sampler2D picture;
uniform sampler2D sheet;
uniform vec2 outputSize;    // pixels
uniform vec2 sheetSize;     // pixels
uniform float scale;        // pixels of the frame for one of the sheet

void main()
{
    vec4 color = texture2D(picture, gl_TexCoord[0].st);
    gl_FragColor = vec4(0.25 * clamp(color.rgb, 0.0, 1.0) * color.a, 1.0);
    vec2 place = floor(gl_TexCoord[0].st * outputSize) / scale;
    if (place.x >= sheetSize.x || place.y >= sheetSize.y) return;
    vec4 text = texture2D(sheet, (floor(place) + 0.5) / sheetSize);
    if (text.a > 0.5) gl_FragColor = vec4(text.rgb, 1.0);
}
