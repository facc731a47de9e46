// What fx.js can call, for editors: completion, hints and checks while you write. Beside fx.js, with jsconfig.json. It is not
// packed. docs/script-api.md says more.

/** The id of a shader, made by QL_initShader. */
type QL_Shader = number;
/** The id of a texture: a picture of the effect, the input, or a LAYER control. */
type QL_Texture = number;
/** The id of a target that shaders draw into; it can be read as a texture. */
type QL_Target = number;
/** The id of a picture on the CPU. */
type QL_Surface = number;
/** The id of a control, made by QL_initParam. */
type QL_Param = number;

// Quillon calls these four. Yours replace them.

/** Once, after the file has run: declare controls, load shaders and textures, make targets. */
declare function setup(): void;
/** Before each frame, with the input's size in pixels. Call QL_setOutputExtent for another output size. */
declare function preRender(width: number, height: number, unused: number): void;
/** Once a frame: run shaders, the last one into QL_getSequenceRT(). */
declare function draw(): void;
/** When the host shows the controls and after one has moved: enable or disable controls. There is no OpenGL. */
declare function updateUIFlags(): void;

/** Kinds of controls. */
declare const QL_Type: {
    UNKNOWN: number;
    /** A slider. */
    FLOAT: number;
    /** A position in space: [x, y, z]. */
    POINT: number;
    /** A color: [red, green, blue, alpha]. */
    COLOR: number;
    /** Another layer. */
    LAYER: number;
    /** A position: [x, y] in pixels. */
    POINT2D: number;
    /** A menu whose value is a texture. */
    TEXTURE: number;
    /** A mask path. It has no value. */
    PATH: number;
    /** A check box: 0 or 1. */
    BOOL: number;
    /** A menu: the number of the entry, from 1. */
    POPUP: number;
    GROUP_START: number;
    GROUP_END: number;
    /** A dial: degrees. */
    ANGLE: number;
};

/** Flags for QL_setParamFlags. */
declare const QL_ParamFlags: {
    NONE: number;
    /** A FLOAT in pixels follows the preview's resolution horizontally. */
    ScaleByWidth: number;
    /** A FLOAT in pixels follows the preview's resolution vertically. */
    ScaleByHeight: number;
    /** A POINT2D arrives in full-size pixels in previews too. */
    RemoveScale: number;
};

/** Names and values for QL_setTextureParam. There are no mipmaps. */
declare const QL_GL: {
    RED: number;
    GREEN: number;
    BLUE: number;
    ALPHA: number;
    NEAREST: number;
    LINEAR: number;
    NEAREST_MIPMAP_NEAREST: number;
    LINEAR_MIPMAP_NEAREST: number;
    NEAREST_MIPMAP_LINEAR: number;
    LINEAR_MIPMAP_LINEAR: number;
    TEXTURE_MAG_FILTER: number;
    TEXTURE_MIN_FILTER: number;
    TEXTURE_WRAP_S: number;
    TEXTURE_WRAP_T: number;
    CLAMP: number;
    REPEAT: number;
    CLAMP_TO_EDGE: number;
    CLAMP_TO_BORDER: number;
    MIRRORED_REPEAT: number;
    TEXTURE_MIN_LOD: number;
    TEXTURE_MAX_LOD: number;
    TEXTURE_BASE_LEVEL: number;
    TEXTURE_MAX_LEVEL: number;
    TEXTURE_LOD_BIAS: number;
    TEXTURE_SWIZZLE_R: number;
    TEXTURE_SWIZZLE_G: number;
    TEXTURE_SWIZZLE_B: number;
    TEXTURE_SWIZZLE_A: number;
};

// Controls

/**
 * Declares a control. Call it in setup, before the shaders that use it. New controls of a shipped effect come last.
 * @param name of the uniform that receives the value
 * @param kind a member of QL_Type
 * @param label what the artist sees; hosts show the first 31 bytes
 */
declare function QL_initParam(name: string, kind: number, label?: string): QL_Param;
/** The value for this frame: a number, [x, y], [x, y, z], [red, green, blue, alpha] from 0 to 1, or a texture's id. */
declare function QL_getParamValue(param: QL_Param): any;
/**
 * In setup: the default. Colors are 0 to 255 here, and a POINT2D is a share of the picture from 0 up to 1. A POPUP counts
 * from 1.
 */
declare function QL_setParamValue(param: QL_Param, value: number | boolean | number[]): boolean;
/** The range of a FLOAT slider, which the artist cannot leave. */
declare function QL_setParamMinMax(param: QL_Param, min: number, max: number): boolean;
/** The entries of a POPUP or TEXTURE menu, separated by |. */
declare function QL_setParamChoices(param: QL_Param, entries: string): boolean;
/** Decimal places that the host shows; 0 before. Call it after QL_setParamFlags. */
declare function QL_setParamPrecision(param: QL_Param, digits: number): boolean;
/** Grays a control out, or not. */
declare function QL_setParamEnabled(param: QL_Param, enabled: boolean | number): boolean;
/** Replaces the flags, the precision and the enabled state. 1 hides a control. */
declare function QL_setParamFlags(param: QL_Param, flags: number): boolean;
/** The whole word of flags. */
declare function QL_getParamFlags(param: QL_Param): number;

// Targets

/** A target, cleared to transparent black. All instances share it, and it keeps its pixels from frame to frame. */
declare function QL_initRenderTarget(width: number, height: number, bits: number): QL_Target;
/** Copies one target into another and stretches it to fit. */
declare function QL_blitRenderTarget(source: QL_Target, destination: QL_Target, flip: boolean, linear: boolean): boolean;
/** [width, height, bits] of a target or texture; false for anything else. */
declare function QL_getSurfaceDim(id: QL_Target | QL_Texture): any;
/** The output of this frame. Ask in each draw. */
declare function QL_getSequenceRT(): QL_Target;
/** The input of this frame. Ask in each draw. */
declare function QL_getSequenceTexture(): QL_Texture;

// Shaders

/** Compiles NAME.frag of the effect, or the text `source`. */
declare function QL_initShader(name: string, source?: string): QL_Shader;
/** Gives a control's value to the uniform of the control's name. */
declare function QL_setShaderParam(shader: QL_Shader, param: QL_Param): boolean;
/** Sets a uniform: a number, an array of as many numbers as it has, or the id of a texture, target or LAYER control. */
declare function QL_setShaderParamVal(shader: QL_Shader, name: string, value: number | boolean | number[]): boolean;
/**
 * Runs the shader over the target.
 * @param flip turns the picture upside down; an odd number of flips between input and output comes out upright
 * @param viewport x, y, width, height in pixels: a part of the target
 */
declare function QL_renderShader(shader: QL_Shader, target: QL_Target, flip: boolean, viewport?: number[]): boolean;
/** The kind of a uniform, a number of QL_Type; 0 if the shader has no such uniform. */
declare function QL_getShaderParamType(shader: QL_Shader, name: string): number;
/** The compiler's message, or an empty text. */
declare function QL_getShaderError(shader: QL_Shader): string;

// Textures

/** Loads a picture of the effect's folder. QL_getSurfaceDim is false if that failed. */
declare function QL_initTexture(file: string): QL_Texture;
/** Sets filters, wrapping or channels. Inputs and layers lose them at each upload: set theirs in draw. */
declare function QL_setTextureParam(id: QL_Texture | QL_Target | QL_Param, name: number, value: number): boolean;

// Pictures on the CPU

/** A surface without pixels. All three arguments are needed. */
declare function QL_initSurface(width: number, height: number, bits: number): QL_Surface;
/** A surface of a texture, target or LAYER control. Release it in the same draw. */
declare function QL_textureToSurface(id: QL_Texture | QL_Target | QL_Param): QL_Surface;
/** A new texture with the surface's pixels. Release it when you no longer need it. */
declare function QL_surfaceToTexture(surface: QL_Surface): QL_Texture;
/**
 * Reduces the colors in place.
 * @param grayscale converts to gray first
 * @param mode 1 black and white; 2 to 7 a palette of 8 to 256 colors of the picture; 8 none; 9 to 21 fixed palettes
 * @param dither 1 none; 3 to 11 error diffusion; 13 to 15 patterns
 * @param value the threshold of mode 1, or the strength of a pattern
 * @param serpentine runs every other row of an error diffusion backward
 */
declare function QL_surfaceQuantize(surface: QL_Surface, grayscale: boolean, mode: number, dither: number, value: number,
                                    serpentine: boolean): boolean;
/** Copies a surface into a target or texture, which takes its size and depth. */
declare function QL_surfaceCopyTo(surface: QL_Surface, target: QL_Target | QL_Texture, flip: boolean): boolean;

// Frame and host

/** The frame's time in seconds. In preRender it is the time of the frame before. */
declare function QL_getTime(): number;
/** In preRender: asks for an output of this size in pixels; 0 keeps the input's side. */
declare function QL_setOutputExtent(width: number, height: number): boolean;
/** [width, height, pixelAspect] of the composition. */
declare function QL_getContextExtent(): number[];
/** [x, y]: where the layer's top left corner is in the output, in pixels. */
declare function QL_getInputOrigin(): number[];
/** Frees a texture, target, shader, surface or control. A negative or made-up id ends the host's process. */
declare function QL_release(id: QL_Texture | QL_Target | QL_Shader | QL_Surface | QL_Param): boolean;
