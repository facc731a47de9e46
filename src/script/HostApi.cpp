// What the script learns of the host, and how it states an output size and ends entities.

#include "script/NativeArguments.h"
#include "script/Natives.h"

namespace quillon {

namespace {

duk_ret_t GetTime(duk_context* ctx) {
    return PushNumber(ctx, Context::Instance().CurrentSequence().time);
}

duk_ret_t Release(duk_context* ctx) {
    constexpr std::uint32_t kLastOrdinal = 0xFFFFFF;
    const std::uint32_t id = ToUnsigned(ctx, 0);
    if (id > kLastOrdinal) Context::Instance().Release(id);
    return PushBool(ctx, true);
}

duk_ret_t SetOutputExtent(duk_context* ctx) {
    const std::uint32_t width = ToUnsigned(ctx, 0);
    const std::uint32_t height = ToUnsigned(ctx, 1);
    Sequence& sequence = Context::Instance().CurrentSequence();
    if (sequence.exists()) {
        sequence.outputWidth = width;
        sequence.outputHeight = height;
    }
    return PushBool(ctx, true);
}

duk_ret_t GetContextExtent(duk_context* ctx) {
    const Context& context = Context::Instance();
    const double numbers[] = {static_cast<double>(context.width), static_cast<double>(context.height), context.scale};
    return PushNumbers(ctx, numbers);
}

duk_ret_t GetInputOrigin(duk_context* ctx) {
    const Sequence& sequence = Context::Instance().CurrentSequence();
    const double numbers[] = {static_cast<double>(static_cast<std::int32_t>(sequence.originX)),
                              static_cast<double>(static_cast<std::int32_t>(sequence.originY))};
    return PushNumbers(ctx, numbers);
}

constexpr Native kHostNatives[] = {
    {"QL_getTime", Guarded<GetTime>, 0, 0},
    {"QL_release", Guarded<Release>, 1, 1},
    {"QL_setOutputExtent", Guarded<SetOutputExtent>, 2, 2},
    {"QL_getContextExtent", Guarded<GetContextExtent>, 0, 0},
    {"QL_getInputOrigin", Guarded<GetInputOrigin>, 0, 0},
};

}  // namespace

std::span<const Native> HostNatives() {
    return kHostNatives;
}

}  // namespace quillon
