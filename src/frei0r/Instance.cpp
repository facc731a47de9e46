#include "frei0r/Instance.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "engine/AEQuillon2.h"
#include "engine/EngineLock.h"
#include "frei0r/FramePixels.h"
#include "frei0r/Report.h"

namespace quillon::frei0r {

namespace {

constexpr std::uint32_t kBitDepth = 8;
constexpr std::size_t kPixelBytes = 4;
// Smaller pieces are converted before another thread is awake.
constexpr std::uint32_t kPixelsOfAPiece = 1 << 18;

}  // namespace

Instance::Instance(const Listing& plugin, FrameSize frameSize, double timeOfASecond)
    : listing(plugin), size(frameSize), hostTimeOfASecond(timeOfASecond), values(plugin.controls.size()) {}

Instance::~Instance() {
    if (effect) thread->run([this] { effect.reset(); });
}

const ListedControl* Instance::controlAt(int index) const {
    const bool isListed = index >= 0 && static_cast<std::size_t>(index) < listing.controls.size();
    return isListed ? &listing.controls[static_cast<std::size_t>(index)] : nullptr;
}

void Instance::set(int index, const void* record) {
    if (const ListedControl* control = controlAt(index); control && record)
        values[static_cast<std::size_t>(index)] = LoadHostValue(TypeOf(control->role), record);
}

void Instance::get(int index, void* record) const {
    const ListedControl* control = controlAt(index);
    if (!control || !record) return;
    Parameter declared;
    SetDeclaredValue(declared, *control, size);
    const auto& set = values[static_cast<std::size_t>(index)];
    StoreHostValue(TypeOf(control->role), set ? *set : HostValueOf(declared, *control, size), record);
}

void Instance::render(double hostTime, const std::uint32_t* first, const std::uint32_t* second, std::uint32_t* out) {
    bool isRendered = false;
    try {
        if (!thread) thread = EngineThread::Shared();
        thread->run([&] { isRendered = renderEffect(hostTime / hostTimeOfASecond, first, second, out); });
    } catch (const std::exception& error) {
        refuse(error.what());
    }
    if (isRendered) return;
    if (first)
        std::memmove(out, first, size.pixels() * kPixelBytes);
    else
        std::fill_n(out, size.pixels(), 0);
}

bool Instance::renderEffect(double seconds, const std::uint32_t* first, const std::uint32_t* second,
                            std::uint32_t* out) {
    if (!effect) effect = std::make_unique<EngineInstance>(listing.name);
    if (!effect->sequence()) return false;
    IPlugin& engine = AEQuillon2::instance();
    const EngineLock lock(engine);
    if (!lock.isHeld()) return refuse("no OpenGL context; frames pass unchanged");
    TakeScriptErrors();

    engine.selectSequence(effect->sequence());
    engine.setContextExtent(size.width, size.height, 1.0f);
    sendValues();
    FrameSize output = size;
    engine.preRender(size.width, size.height, &output.width, &output.height);
    // Drawing for nothing would take seconds and a gigabyte.
    if (output.pixels() >= kResultBytesLimit / kPixelBytes) return refuse("preRender: the output is too large");
    const FrameOrigin origin = OriginIn(output, size);
    engine.setInputOrigin(static_cast<std::uint32_t>(origin.x), static_cast<std::uint32_t>(origin.y));

    if (first || !hasInput) upload(kInputLayer, first);
    hasInput = true;
    if (listing.layer != kNoLayer) upload(listing.layer, second);
    engine.draw(seconds, output.width, output.height, kBitDepth, 1.0f);

    std::string shaderErrors;
    if (!engine.shaderErrors(shaderErrors).empty()) return refuse(shaderErrors);
    if (const std::string errors = TakeScriptErrors(); !errors.empty()) return refuse("fx.js: " + errors);
    const MappedResult mapped(engine);
    if (!mapped.get()) return refuse("the graphics driver gave no pixels");
    const auto* const pixels = static_cast<const std::uint32_t*>(mapped.get());
    shareRows([&](RowRange rows) { WriteFrame(pixels, output, out, size, rows); });
    return true;
}

void Instance::shareRows(const std::function<void(RowRange)>& convert) const {
    const std::uint32_t rows = std::max(1u, kPixelsOfAPiece / size.width);
    thread->share((size.height - 1) / rows + 1, [&](std::uint32_t piece) {
        const std::uint32_t first = piece * rows;
        convert({first, first + std::min(rows, size.height - first)});
    });
}

void Instance::sendValues() {
    IPlugin& engine = AEQuillon2::instance();
    Parameter value;
    const ListedControl* last = nullptr;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const ListedControl& control = listing.controls[i];
        // The parts of one control follow each other: each adds to the value.
        if (!last || last->declaration != control.declaration) SetDeclaredValue(value, control, size);
        if (values[i]) SetHostValue(value, control, *values[i], size);
        const std::uint32_t kind = engine.parameterInfo(control.declaration)->kind;
        if (ControlKindOf(kind).hostControl == HostControlOf(control.role))
            engine.setParameterValue(control.declaration, value.value);
        last = &control;
    }
}

void Instance::upload(std::uint32_t layer, const std::uint32_t* pixels) {
    pixelsOfEngine.resize(size.pixels());
    if (pixels)
        shareRows([&](RowRange rows) {
            const std::size_t start = std::size_t{rows.first} * size.width;
            const std::size_t count = std::size_t{rows.end - rows.first} * size.width;
            ToEngineOrder({pixels + start, count}, pixelsOfEngine.data() + start);
        });
    else
        std::ranges::fill(pixelsOfEngine, 0);
    AEQuillon2::instance().setLayerPixels(layer, pixelsOfEngine.data(), size.width, size.height, kBitDepth,
                                          size.width * kPixelBytes);
}

bool Instance::refuse(const std::string& why) const {
    Report(listing.name, why);
    return false;
}

}  // namespace quillon::frei0r
