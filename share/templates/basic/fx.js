// One pass, two controls. `quillon docs script-api` describes every function that this file can call.

var amount, tint;      // ids of the controls
var colorize;          // id of the shader

// Runs once. Controls come before shaders: a uniform takes the kind of the control that has its name.
function setup() {
    amount = QL_initParam("amount", QL_Type.FLOAT, "Amount (percent)");
    QL_setParamMinMax(amount, 0, 100);
    QL_setParamValue(amount, 50);                  // the default
    QL_setParamPrecision(amount, 1);               // decimal places that the host shows

    tint = QL_initParam("tint", QL_Type.COLOR, "Tint");
    QL_setParamValue(tint, [255, 190, 120, 255]);  // 0 to 255 here; shaders and draw() see 0 to 1

    colorize = QL_initShader("colorize");          // colorize.frag
}

// Runs for each frame. All instances of the effect share the shader, so each frame sets all of its uniforms.
function draw() {
    var picture = QL_getSequenceTexture();

    // Each pixel is read as it is. Each frame's upload resets the filters.
    QL_setTextureParam(picture, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(picture, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);

    QL_setShaderParamVal(colorize, "picture", picture);
    QL_setShaderParam(colorize, amount);           // to the uniform of the control's name
    QL_setShaderParam(colorize, tint);
    QL_renderShader(colorize, QL_getSequenceRT(), true);  // `true` flips: a picture arrives upright after one flip
}
