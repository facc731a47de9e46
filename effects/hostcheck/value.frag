// The color of a picture at one place, written as four numbers of six characters each, on green or red.

uniform sampler2D picture;
uniform sampler2D font;
uniform vec2 place;
uniform vec4 expected;
uniform vec4 good;
uniform vec4 bad;

const float ALLOWED = 0.0045;   // 8 bits round by half of that
const float DOT = 14.0;         // of the font's characters
const float MINUS = 13.0;
const float ZERO = 16.0;

void main()
{
    vec4 seen = texture2D(picture, place);
    vec4 off = abs(seen - expected);
    bool isGood = max(max(off.r, off.g), max(off.b, off.a)) < ALLOWED;

    float column = floor(gl_TexCoord[0].s * 24.0);
    float channel = floor(column / 6.0);
    float position = column - 6.0 * channel;
    float number = channel < 0.5 ? seen.r : channel < 1.5 ? seen.g : channel < 2.5 ? seen.b : seen.a;
    float thousandths = floor(min(abs(number), 9.999) * 1000.0 + 0.5);

    float code = 0.0;
    if (position < 0.5) code = number < -0.0005 ? MINUS : 0.0;
    else if (position < 1.5) code = ZERO + floor(thousandths / 1000.0);
    else if (position < 2.5) code = DOT;
    else if (position < 3.5) code = ZERO + mod(floor(thousandths / 100.0), 10.0);
    else if (position < 4.5) code = ZERO + mod(floor(thousandths / 10.0), 10.0);
    else code = ZERO + mod(thousandths, 10.0);

    vec2 within = vec2(gl_TexCoord[0].s * 24.0 - column, gl_TexCoord[0].t);
    vec2 cell = vec2(mod(code, 16.0), floor(code / 16.0));
    float isInk = texture2D(font, (cell + within) / vec2(16.0, 6.0)).r;
    gl_FragColor = isInk > 0.5 ? vec4(1.0) : (isGood ? good : bad);
}
