// The effect's controls: declaring, reading and changing them.

#include <algorithm>
#include <string>

#include "script/NativeArguments.h"
#include "script/Natives.h"

namespace quillon {

namespace {

// The live record of a parameter id; null for any other id. Asked again after every coercion.
Parameter* LiveParameter(std::uint32_t id) {
    if (!IsIdOf<Parameter>(id)) return nullptr;
    Parameter& found = Context::Instance().FindParameter(id);
    return found.id != 0 ? &found : nullptr;
}

// Floats of a value that scripts see as an array; 0 for the kinds that are none.
std::size_t ArrayLength(std::uint32_t kind) {
    switch (kind) {
        case POINT:
            return 3;
        case COLOR:
            return 4;
        case POINT2D:
            return 2;
        default:
            return 0;
    }
}

duk_ret_t initParam(duk_context* ctx) {
    const duk_idx_t count = duk_get_top(ctx);
    if (count < 2) return PushNumber(ctx, 0);
    const char* name = duk_to_string(ctx, 0);
    const std::uint32_t kind = ToUnsigned(ctx, 1);
    const char* label = count > 2 ? duk_to_string(ctx, 2) : "";

    Context& context = Context::Instance();
    const std::uint32_t id = context.NewParameter(name, kind, label);
    const std::uint32_t texture = kind == LAYER ? context.NewTexture(2, 2, 8) : 0;
    Parameter& parameter = context.FindParameter(id);
    if (kind == LAYER) parameter.texture = texture;
    // The record counts as live from here on.
    parameter.id = id;
    return PushNumber(ctx, id);
}

duk_ret_t getParamValue(duk_context* ctx) {
    const Parameter* parameter = LiveParameter(ToUnsigned(ctx, 0));
    if (!parameter) return PushBool(ctx, false);
    switch (parameter->kind) {
        case FLOAT:
        case ANGLE:
            return PushNumber(ctx, parameter->floatAt(0));
        case POINT:
        case COLOR:
        case POINT2D: {
            double numbers[4];
            const std::size_t length = ArrayLength(parameter->kind);
            for (std::size_t i = 0; i < length; ++i) numbers[i] = parameter->floatAt(static_cast<int>(i));
            return PushNumbers(ctx, {numbers, length});
        }
        case LAYER:
        case TEXTURE:
            return PushNumber(ctx, parameter->texture);
        case BOOL:
        case POPUP:
            return PushNumber(ctx, parameter->intValue());
        default:
            return 1;  // nothing is pushed: the script gets the coerced id back
    }
}

duk_ret_t setParamValue(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    const Parameter* found = LiveParameter(id);
    if (!found) return PushBool(ctx, false);
    const std::uint32_t kind = found->kind;
    switch (kind) {
        case FLOAT:
        case ANGLE: {
            const float number = ToFloat(ctx, 1);
            if (Parameter* parameter = LiveParameter(id)) parameter->setFloatAt(0, number);
            break;
        }
        case POINT:
        case POINT2D:
            // Element by element: what came before an element that throws stands.
            if (!duk_is_array(ctx, 1)) break;
            for (std::size_t i = 0; i < ArrayLength(kind); ++i) {
                const float number = ElementToFloat(ctx, 1, static_cast<duk_uarridx_t>(i));
                if (Parameter* parameter = LiveParameter(id)) parameter->setFloatAt(static_cast<int>(i), number);
            }
            break;
        case COLOR: {
            if (!duk_is_array(ctx, 1)) break;
            float numbers[4];
            ElementsToFloats(ctx, 1, numbers);
            if (Parameter* parameter = LiveParameter(id))
                for (int i = 0; i < 4; ++i) parameter->setFloatAt(i, numbers[i]);
            break;
        }
        case LAYER:
        case TEXTURE: {
            const std::uint32_t texture = ToUnsigned(ctx, 1);
            if (Parameter* parameter = LiveParameter(id)) parameter->texture = texture;
            break;
        }
        case BOOL:
        case POPUP: {
            const std::int32_t number = duk_to_int(ctx, 1);
            if (Parameter* parameter = LiveParameter(id)) parameter->setIntValue(number);
            break;
        }
        default:
            break;
    }
    return PushBool(ctx, true);
}

duk_ret_t setParamMinMax(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    const Parameter* found = LiveParameter(id);
    if (!found) return PushBool(ctx, false);
    if (found->kind == FLOAT) {
        const float minimum = ToFloat(ctx, 1);
        const float maximum = ToFloat(ctx, 2);
        if (Parameter* parameter = LiveParameter(id)) {
            parameter->min[0] = minimum;
            parameter->max[0] = maximum;
        }
    }
    return PushBool(ctx, true);
}

duk_ret_t setParamChoices(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!LiveParameter(id)) return PushBool(ctx, false);
    duk_size_t length = 0;
    duk_to_string(ctx, 1);
    const char* text = duk_get_lstring(ctx, 1, &length);
    if (Parameter* parameter = LiveParameter(id)) {
        parameter->choices = text;
        // A popup needs two entries: one without a separator counts as none.
        const auto separators = std::count(parameter->choices.begin(), parameter->choices.end(), '|');
        parameter->choiceCount = separators == 0 ? 0 : static_cast<std::uint32_t>(separators + 1);
    }
    return PushBool(ctx, true);
}

duk_ret_t SetParamPrecision(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!LiveParameter(id)) return PushBool(ctx, false);
    const std::uint32_t precision = ToUnsigned(ctx, 1);
    if (Parameter* parameter = LiveParameter(id))
        parameter->flags =
            (parameter->flags & ~ParameterFlag::precisionMask) | (precision << ParameterFlag::precisionShift);
    return PushBool(ctx, true);
}

duk_ret_t setParamEnabled(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!LiveParameter(id)) return PushBool(ctx, false);
    const bool enabled = duk_to_int(ctx, 1) != 0;
    if (Parameter* parameter = LiveParameter(id)) {
        if (enabled)
            parameter->flags &= ~ParameterFlag::disabled;
        else
            parameter->flags |= ParameterFlag::disabled;
    }
    return PushBool(ctx, true);
}

duk_ret_t setParamFlags(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    const std::uint32_t flags = duk_to_uint32(ctx, 1);
    Parameter* parameter = LiveParameter(id);
    if (parameter) parameter->flags = flags;
    return PushBool(ctx, parameter != nullptr);
}

duk_ret_t getParamFlags(duk_context* ctx) {
    const Parameter* parameter = LiveParameter(ToUnsigned(ctx, 0));
    if (!parameter) return PushBool(ctx, false);
    return PushNumber(ctx, static_cast<std::int32_t>(parameter->flags));
}

constexpr Native kParameterNatives[] = {
    {"QL_initParam", Guarded<initParam>, DUK_VARARGS},   {"QL_getParamValue", Guarded<getParamValue>, 1},
    {"QL_setParamValue", Guarded<setParamValue>, 2},     {"QL_setParamMinMax", Guarded<setParamMinMax>, 3},
    {"QL_setParamChoices", Guarded<setParamChoices>, 2}, {"QL_setParamPrecision", Guarded<SetParamPrecision>, 2},
    {"QL_setParamEnabled", Guarded<setParamEnabled>, 2}, {"QL_setParamFlags", Guarded<setParamFlags>, 2},
    {"QL_getParamFlags", Guarded<getParamFlags>, 1},
};

}  // namespace

std::span<const Native> ParameterNatives() {
    return kParameterNatives;
}

}  // namespace quillon
