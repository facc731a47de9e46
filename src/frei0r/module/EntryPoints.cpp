// The functions that a frei0r host finds in the plug-in by their names. Whatever a host does, calls come in one at a
// time, and no exception goes out.

#include <exception>
#include <mutex>
#include <utility>

#include "frei0r/Frei0rApi.h"
#include "frei0r/Instance.h"
#include "frei0r/Listing.h"
#include "frei0r/OwnModule.h"
#include "frei0r/Report.h"
#include "platform/Export.h"

namespace quillon::frei0r {

namespace {

// Held for the whole of every call that has an instance. Lives in a cell that is never freed: a host thread may still
// be inside when the process ends.
std::mutex& EntryGate() {
    static auto* const kGate = new std::mutex;
    return *kGate;
}

Listing ReadOwnListing() {
    if (auto listing = ReadListingOf(OwnModuleFile())) return *std::move(listing);
    // The template of plug-ins, which has no effect inside, is a filter that does nothing.
    Listing nothing;
    nothing.name = "Quillon without an effect";
    nothing.explanation = "A template; quillon pack makes plug-ins.";
    return nothing;
}

const Listing& OwnListing() {
    static const Listing kListing = ReadOwnListing();
    return kListing;
}

// Runs the call under the gate; what it throws is reported, and `otherwise` is the answer.
template <class Call, class Answer>
Answer Enter(Call call, Answer otherwise) {
    try {
        const std::lock_guard lock(EntryGate());
        return call();
    } catch (const std::exception& error) {
        Report("plug-in", error.what());
        return otherwise;
    }
}

template <class Call>
void EnterInstance(void* instance, Call call) {
    if (!instance) return;
    Enter([&] { return call(*static_cast<Instance*>(instance)), 0; }, 0);
}

}  // namespace

}  // namespace quillon::frei0r

using namespace quillon::frei0r;

extern "C" {

QUILLON_EXPORT int f0r_init() {
    return 1;
}

// Hosts call it once for each time that they have loaded the plug-in, also while they still have instances.
QUILLON_EXPORT void f0r_deinit() {}

QUILLON_EXPORT void f0r_get_plugin_info(PluginInfo* info) {
    const Listing& listing = OwnListing();
    *info = {.name = listing.name.c_str(),
             .author = "made with Quillon",
             .pluginType = static_cast<int>(listing.type),
             .colorModel = kColorModelRgba8888,
             .interfaceVersion = kInterfaceVersion,
             .majorVersion = static_cast<int>(listing.majorVersion),
             .minorVersion = static_cast<int>(listing.minorVersion),
             .paramCount = static_cast<int>(listing.controls.size()),
             .explanation = listing.explanation.c_str()};
}

QUILLON_EXPORT void f0r_get_param_info(ParamInfo* info, int index) {
    const auto& controls = OwnListing().controls;
    *info = {"", static_cast<int>(ParamType::number), ""};
    if (index < 0 || static_cast<std::size_t>(index) >= controls.size()) return;
    const ListedControl& control = controls[static_cast<std::size_t>(index)];
    *info = {control.name.c_str(), static_cast<int>(TypeOf(control.role)), control.explanation.c_str()};
}

// Null for a frame without pixels.
QUILLON_EXPORT void* f0r_construct(unsigned int width, unsigned int height) {
    if (width == 0 || height == 0) return nullptr;
    const double timeOfASecond = HostTimeOfASecond(__builtin_return_address(0));
    return Enter(
        [&]() -> void* {
            return new Instance(OwnListing(), {width, height}, timeOfASecond);
        },
        static_cast<void*>(nullptr));
}

QUILLON_EXPORT void f0r_destruct(void* instance) {
    EnterInstance(instance, [](Instance& gone) { delete &gone; });
}

QUILLON_EXPORT void f0r_set_param_value(void* instance, void* record, int index) {
    EnterInstance(instance, [&](Instance& entered) { entered.set(index, record); });
}

QUILLON_EXPORT void f0r_get_param_value(void* instance, void* record, int index) {
    EnterInstance(instance, [&](Instance& entered) { entered.get(index, record); });
}

QUILLON_EXPORT void f0r_update(void* instance, double time, const std::uint32_t* in, std::uint32_t* out) {
    EnterInstance(instance, [&](Instance& entered) { entered.render(time, in, nullptr, out); });
}

// The third input is that of a kind of mixer that this one is not.
QUILLON_EXPORT void f0r_update2(void* instance, double time, const std::uint32_t* first, const std::uint32_t* second,
                                const std::uint32_t*, std::uint32_t* out) {
    EnterInstance(instance, [&](Instance& entered) { entered.render(time, first, second, out); });
}
}
