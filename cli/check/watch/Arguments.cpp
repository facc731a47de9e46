#include "cli/check/watch/Arguments.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <optional>
#include <string_view>

#include "entities/Context.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

using Type = NativeCall::Type;

struct RoleRow {
    Role role;
    const char* words;  // what the argument should be
    std::initializer_list<EntityKind> kinds;
};

const RoleRow kRoles[] = {
    {Role::number, "a number", {}},
    {Role::text, "a text", {}},
    {Role::control, "the id of a control", {EntityKind::control}},
    {Role::shader, "the id of a shader", {EntityKind::shader}},
    {Role::target, "the id of a target", {EntityKind::target}},
    {Role::surface, "the id of a surface", {EntityKind::surface}},
    {Role::picture, "the id of a target or texture", {EntityKind::target, EntityKind::texture}},
    {Role::anyPicture,
     "the id of a target, a texture or a LAYER control",
     {EntityKind::target, EntityKind::texture, EntityKind::control}},
    {Role::entity,
     "an id",
     {EntityKind::control, EntityKind::shader, EntityKind::target, EntityKind::texture, EntityKind::surface}},
};

const RoleRow* RowOf(Role role) {
    for (const RoleRow& row : kRoles)
        if (row.role == role) return &row;
    return nullptr;
}

Fit FitOfId(const RoleRow& row, const NativeCall& call, std::size_t argument) {
    const std::optional<double> number = call.numberOf(argument);
    if (IsLeftOut(call, argument) || number == 0.0) return Fit::namesNothing;
    if (!number || std::isnan(*number)) return Fit::isWrong;
    const std::uint32_t id = *call.idOf(argument);
    const EntityKind kind = KindOfId(id);
    if (std::ranges::find(row.kinds, kind) == row.kinds.end()) return Fit::isWrong;
    if (!IsLive(id)) return Fit::namesNothing;
    const bool lacksPicture = row.role == Role::anyPicture && kind == EntityKind::control &&
                              Context::Instance().FindParameter(id).texture == 0;
    return lacksPicture ? Fit::isWrong : Fit::fits;
}

// Enough of a text to know it by, in whole characters.
std::string_view BeginningOf(std::string_view text) {
    constexpr std::size_t kMost = 40;
    std::size_t end = std::min(text.size(), kMost);
    while (end < text.size() && (text[end] & 0xC0) == 0x80) --end;
    return text.substr(0, end);
}

}  // namespace

bool HasDemands(Role role) {
    return RowOf(role) != nullptr;
}

const char* WordsOfRole(Role role) {
    return RowOf(role)->words;
}

bool IsLeftOut(const NativeCall& call, std::size_t argument) {
    const Type type = call.typeOf(argument);
    return type == Type::missing || type == Type::undefined || type == Type::null;
}

Fit FitOf(Role role, const NativeCall& call, std::size_t argument) {
    const RoleRow* const row = RowOf(role);
    const Type type = call.typeOf(argument);
    if (!row || type == Type::missing) return Fit::fits;
    if (role == Role::text) return type == Type::text ? Fit::fits : Fit::isWrong;
    if (role != Role::number) return FitOfId(*row, call, argument);
    // What was left out counts as 0, as everywhere.
    if (type == Type::number || IsLeftOut(call, argument)) return Fit::fits;
    return std::isnan(call.numberOf(argument).value_or(NAN)) ? Fit::isWrong : Fit::fits;
}

std::string WordsOfArgument(const WatchedRun& run, const NativeCall& call, std::size_t argument) {
    switch (call.typeOf(argument)) {
        case Type::missing:
        case Type::undefined:
            return "undefined";
        case Type::null:
            return "null";
        case Type::boolean:
            return *call.numberOf(argument) != 0 ? "true" : "false";
        case Type::text:
            return fmt::format("the text \"{}\"", BeginningOf(call.textOf(argument)));
        case Type::array:
            return "an array";
        case Type::other:
            return "an object";
        case Type::number:
            break;
    }
    const std::uint32_t id = *call.idOf(argument);
    const EntityKind kind = KindOfId(id);
    if (kind == EntityKind::none) return fmt::format("{}", *call.numberOf(argument));
    if (!IsLive(id)) {
        const Entities::Record* const record = run.entities.find(id);
        return fmt::format("{} that was released{}", WordsOf(kind),
                           record ? run.findings.wordsOfLine(record->releasedAt) : "");
    }
    const Entities::Record* const record = run.entities.findLiving(id);
    return fmt::format("{}{}", WordsOf(kind), record ? " made" + run.findings.wordsOfLine(record->line) : "");
}

}  // namespace quillon::cli
