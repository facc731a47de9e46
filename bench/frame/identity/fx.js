// Copies the input into the output as it is.
var copy;

function setup() {
    copy = QL_initShader('copy');
}

function draw() {
    var input = QL_getSequenceTexture();
    QL_setTextureParam(input, QL_GL.TEXTURE_MIN_FILTER, QL_GL.NEAREST);
    QL_setTextureParam(input, QL_GL.TEXTURE_MAG_FILTER, QL_GL.NEAREST);
    QL_setShaderParamVal(copy, 'sInput0', input);
    QL_renderShader(copy, QL_getSequenceRT(), false);
}
