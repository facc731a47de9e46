#include "cli/check/watch/Entities.h"

#include <algorithm>
#include <string_view>

#include "cli/check/watch/Findings.h"
#include "entities/Context.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

constexpr std::string_view kMakers[] = {"QL_initParam",   "QL_initRenderTarget", "QL_initShader",      "QL_initSurface",
                                        "QL_initTexture", "QL_surfaceToTexture", "QL_textureToSurface"};

// Lookups that miss all give the same object.
template <class Kind>
bool Finds(Kind& (Context::*find)(std::uint32_t), std::uint32_t id) {
    Context& context = Context::Instance();
    return &(context.*find)(id) != &(context.*find)(0);
}

}  // namespace

EntityKind KindOfId(std::uint32_t id) {
    switch (TagOf(id)) {
        case Parameter::Factory::kTag:
            return EntityKind::control;
        case Shader::Factory::kTag:
            return EntityKind::shader;
        case RenderTarget::Factory::kTag:
            return EntityKind::target;
        case Texture::Factory::kTag:
            return EntityKind::texture;
        case Surface::Factory::kTag:
            return EntityKind::surface;
        default:
            return EntityKind::none;
    }
}

const char* WordsOf(EntityKind kind) {
    constexpr const char* kWords[] = {"nothing", "a control", "a shader", "a target", "a texture", "a surface"};
    return kWords[static_cast<std::size_t>(kind)];
}

bool IsLive(std::uint32_t id) {
    switch (KindOfId(id)) {
        case EntityKind::control:
            return Context::Instance().FindParameter(id).id != 0;
        case EntityKind::shader:
            return Finds(&Context::FindShader, id);
        case EntityKind::target:
            return Finds(&Context::FindRenderTarget, id);
        case EntityKind::texture:
            return Finds(&Context::FindTexture, id);
        case EntityKind::surface:
            return Finds(&Context::FindSurface, id);
        case EntityKind::none:
            break;
    }
    return false;
}

void Entities::before(const NativeCall& call) {
    if (call.name() != "QL_release") return;
    const auto found = records.find(call.idOf(0).value_or(0));
    if (found == records.end() || found->second.releasedAt != 0) return;
    // A place without a line counts as released too.
    found->second.releasedAt = std::max(LineOf(call), 1);
}

void Entities::after(const NativeCall& call) {
    if (std::ranges::find(kMakers, call.name()) == std::end(kMakers)) return;
    const auto id = static_cast<std::uint32_t>(call.resultNumber());
    if (id == 0) return;
    records[id] = {.id = id, .serial = ++makings, .line = LineOf(call), .isOfFrame = isInFrame};
}

const Entities::Record* Entities::find(std::uint32_t id) const {
    const auto found = records.find(id);
    return found == records.end() ? nullptr : &found->second;
}

const Entities::Record* Entities::findLiving(std::uint32_t id) const {
    const Record* const record = find(id);
    return record && record->releasedAt == 0 ? record : nullptr;
}

std::vector<Entities::Record> Entities::living() const {
    std::vector<Record> living;
    for (const auto& [id, record] : records)
        if (record.releasedAt == 0) living.push_back(record);
    return living;
}

}  // namespace quillon::cli
