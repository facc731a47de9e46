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

duk_ret_t InitParam(duk_context* ctx) {
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

duk_ret_t GetParamValue(duk_context* ctx) {
    const Parameter* parameter = LiveParameter(ToUnsigned(ctx, 0));
    if (!parameter) return PushBool(ctx, false);
    const ControlKind& kind = ControlKindOf(parameter->kind);
    switch (kind.scriptForm) {
        case ScriptForm::number:
            return PushNumber(ctx, parameter->floatAt(0));
        case ScriptForm::elements:
        case ScriptForm::tuple: {
            double numbers[kMostFloats];
            for (std::size_t i = 0; i < kind.floats; ++i) numbers[i] = parameter->floatAt(static_cast<int>(i));
            return PushNumbers(ctx, {numbers, kind.floats});
        }
        case ScriptForm::entity:
            return PushNumber(ctx, parameter->texture);
        case ScriptForm::integer:
            return PushNumber(ctx, parameter->intValue());
        case ScriptForm::none:
            break;
    }
    return 1;  // nothing is pushed: the script receives the coerced id
}

duk_ret_t SetParamValue(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    const Parameter* found = LiveParameter(id);
    if (!found) return PushBool(ctx, false);
    const ControlKind& kind = ControlKindOf(found->kind);
    switch (kind.scriptForm) {
        case ScriptForm::number: {
            const float number = ToFloat(ctx, 1);
            if (Parameter* parameter = LiveParameter(id)) parameter->setFloatAt(0, number);
            break;
        }
        case ScriptForm::elements:
            if (!duk_is_array(ctx, 1)) break;
            for (std::size_t i = 0; i < kind.floats; ++i) {
                const float number = ElementToFloat(ctx, 1, static_cast<duk_uarridx_t>(i));
                if (Parameter* parameter = LiveParameter(id)) parameter->setFloatAt(static_cast<int>(i), number);
            }
            break;
        case ScriptForm::tuple: {
            if (!duk_is_array(ctx, 1)) break;
            float numbers[kMostFloats];
            ElementsToFloats(ctx, 1, {numbers, kind.floats});
            if (Parameter* parameter = LiveParameter(id))
                for (std::size_t i = 0; i < kind.floats; ++i) parameter->setFloatAt(static_cast<int>(i), numbers[i]);
            break;
        }
        case ScriptForm::entity: {
            const std::uint32_t texture = ToUnsigned(ctx, 1);
            if (Parameter* parameter = LiveParameter(id)) parameter->texture = texture;
            break;
        }
        case ScriptForm::integer: {
            const std::int32_t number = duk_to_int(ctx, 1);
            if (Parameter* parameter = LiveParameter(id)) parameter->setIntValue(number);
            break;
        }
        case ScriptForm::none:
            break;
    }
    return PushBool(ctx, true);
}

duk_ret_t SetParamMinMax(duk_context* ctx) {
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

duk_ret_t SetParamChoices(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!LiveParameter(id)) return PushBool(ctx, false);
    duk_size_t length = 0;
    duk_to_string(ctx, 1);
    const char* text = duk_get_lstring(ctx, 1, &length);
    if (Parameter* parameter = LiveParameter(id)) {
        parameter->choices = text;
        // A popup needs two entries: a text without a separator counts as no entry.
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
            (parameter->flags & ~ParameterFlag::kPrecisionMask) | (precision << ParameterFlag::kPrecisionShift);
    return PushBool(ctx, true);
}

duk_ret_t SetParamEnabled(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (!LiveParameter(id)) return PushBool(ctx, false);
    const bool enabled = duk_to_int(ctx, 1) != 0;
    if (Parameter* parameter = LiveParameter(id)) {
        if (enabled)
            parameter->flags &= ~ParameterFlag::kDisabled;
        else
            parameter->flags |= ParameterFlag::kDisabled;
    }
    return PushBool(ctx, true);
}

duk_ret_t SetParamFlags(duk_context* ctx) {
    const std::uint32_t id = ToUnsigned(ctx, 0);
    const std::uint32_t flags = duk_to_uint32(ctx, 1);
    Parameter* parameter = LiveParameter(id);
    if (parameter) parameter->flags = flags;
    return PushBool(ctx, parameter != nullptr);
}

duk_ret_t GetParamFlags(duk_context* ctx) {
    const Parameter* parameter = LiveParameter(ToUnsigned(ctx, 0));
    if (!parameter) return PushBool(ctx, false);
    return PushNumber(ctx, static_cast<std::int32_t>(parameter->flags));
}

constexpr Native kParameterNatives[] = {
    {"QL_initParam", Guarded<InitParam>, 2, 3, true},       {"QL_getParamValue", Guarded<GetParamValue>, 1, 1},
    {"QL_setParamValue", Guarded<SetParamValue>, 2, 2},     {"QL_setParamMinMax", Guarded<SetParamMinMax>, 3, 3},
    {"QL_setParamChoices", Guarded<SetParamChoices>, 2, 2}, {"QL_setParamPrecision", Guarded<SetParamPrecision>, 2, 2},
    {"QL_setParamEnabled", Guarded<SetParamEnabled>, 2, 2}, {"QL_setParamFlags", Guarded<SetParamFlags>, 2, 2},
    {"QL_getParamFlags", Guarded<GetParamFlags>, 1, 1},
};

}  // namespace

std::span<const Native> ParameterNatives() {
    return kParameterNatives;
}

}  // namespace quillon
