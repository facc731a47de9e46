#include "ModuleFrame.h"

#include <chrono>
#include <cstring>
#include <stdexcept>

#include "host/HostSession.h"

namespace quillon::bench {

namespace {

host::EntryPoint realEntry = nullptr;
double spentMilliseconds = 0;

PF_Err TimedEntry(PF_Cmd cmd, PF_InData* in, PF_OutData* out, PF_ParamDef* params[], PF_LayerDef* output, void* extra) {
    const auto start = std::chrono::steady_clock::now();
    const PF_Err error = realEntry(cmd, in, out, params, output, extra);
    spentMilliseconds += std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    return error;
}

host::EffectModule Timed(const host::EffectModule& module) {
    realEntry = module.entry();
    return host::EffectModule(TimedEntry, module.handle());
}

host::HostSettings QuietSettings() {
    host::HostSettings settings;
    settings.rowPaddingPixels = 0;
    settings.keepsRecords = false;
    return settings;
}

}  // namespace

struct ModuleFrame::Session {
    explicit Session(const std::filesystem::path& file) : host(Timed(host::EffectModule(file)), QuietSettings()) {
        host.start();
        instance = &host.apply();
    }
    ~Session() { host.remove(*instance); }

    host::HostSession host;
    host::HostInstance* instance = nullptr;
};

ModuleFrame::ModuleFrame(const std::filesystem::path& module) : session(std::make_unique<Session>(module)) {}
ModuleFrame::~ModuleFrame() = default;

double ModuleFrame::render(const FrameSize& size, const std::byte* input, std::byte* output) {
    const auto world = session->host.newWorld(static_cast<A_long>(size.width), static_cast<A_long>(size.height),
                                              static_cast<int>(size.bitDepth));
    world->write({input, size.bytes()});
    host::FrameRequest request;
    request.input = world;
    spentMilliseconds = 0;
    const host::FrameResult result = session->host.renderFrame(*session->instance, request);
    if (result.error() != PF_Err_NONE || !result.output) throw std::runtime_error("the module rendered no frame");
    const std::vector<std::byte> rows = result.output->tightBytes();
    std::memcpy(output, rows.data(), size.bytes());
    return spentMilliseconds;
}

}  // namespace quillon::bench
