#include "cli/check/watch/FlipChecks.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include "entities/Context.h"
#include "gpu/Shader.h"
#include "script/NativeCalls.h"

namespace quillon::cli {

namespace {

// What counts as alike, from -1 to 1, and what as another picture.
constexpr double kAlike = 0.9;
constexpr double kUnlike = 0.6;

// Of 8 bits a channel, A, R, G, B, in rows that are so many bytes apart.
std::vector<double> BrightnessOf(const std::byte* pixels, std::size_t width, std::size_t height, std::size_t rowBytes) {
    std::vector<double> brightness(width * height);
    for (std::size_t i = 0; i < brightness.size(); ++i)
        for (std::size_t channel = 1; channel < 4; ++channel)
            brightness[i] += std::to_integer<int>(pixels[i / width * rowBytes + i % width * 4 + channel]);
    return brightness;
}

void ReverseRows(std::vector<double>& pixels, std::size_t width) {
    for (std::size_t top = 0, bottom = pixels.size() / width - 1; top < bottom; ++top, --bottom)
        for (std::size_t x = 0; x < width; ++x) std::swap(pixels[top * width + x], pixels[bottom * width + x]);
}

// How far two pictures of one size rise and fall together, from -1 to 1; 0 where one is even.
double Likeness(const std::vector<double>& a, const std::vector<double>& b) {
    double sumA = 0, sumB = 0, squaresA = 0, squaresB = 0, products = 0;
    for (std::size_t i = 0; i < a.size(); ++i) {
        sumA += a[i];
        sumB += b[i];
        squaresA += a[i] * a[i];
        squaresB += b[i] * b[i];
        products += a[i] * b[i];
    }
    const auto n = static_cast<double>(a.size());
    const double spread = (squaresA - sumA * sumA / n) * (squaresB - sumB * sumB / n);
    return spread > 0 ? (products - sumA * sumB / n) / std::sqrt(spread) : 0;
}

// Whether the output's rows are in the order of the input's. At 8 bits and one size; other frames say nothing.
bool IsUpsideDown(RenderTarget& output, const Texture& input) {
    const PixelBuffer& copy = input.pixelCopy();
    const std::size_t width = input.width, height = input.height;
    if (!copy || width * height == 0 || input.bitDepth != 8 || !output.isUsable() || output.bitDepth != 8 ||
        output.width != width || output.height != height)
        return false;
    const std::size_t rowBytes = copy->size() / height;  // a host pads its rows
    if (rowBytes < width * 4 || copy->size() % height != 0) return false;
    const auto* const mapped = static_cast<const std::byte*>(output.mapPixels());
    const std::vector<double> shown = mapped ? BrightnessOf(mapped, width, height, width * 4) : std::vector<double>();
    RenderTarget::unmapPixels();
    if (shown.empty()) return false;
    std::vector<double> given = BrightnessOf(copy->data(), width, height, rowBytes);
    if (Likeness(shown, given) < kAlike) return false;
    ReverseRows(given, width);
    return Likeness(shown, given) < kUnlike;
}

}  // namespace

void FlipChecks::entryBegins() {
    lastPass = {};
}

void FlipChecks::entryEnds(bool hasFailed) {
    if (run.entry != Entry::draw || hasFailed) return;
    Context& context = Context::Instance();
    const Sequence& sequence = context.CurrentSequence();
    RenderTarget& output = context.FindRenderTarget(sequence.renderTarget);
    if (orderOf(output.textureName.get()) != true) return;
    if (IsUpsideDown(output, context.FindTexture(sequence.texture)))
        run.findings.add("script/upside-down", lastPass, "draw: the picture is upside down");
}

void FlipChecks::after(const NativeCall& call) {
    if (call.isRefused()) return;
    if (call.name() == "QL_renderShader") {
        const bool isWhole = call.typeOf(3) != NativeCall::Type::array;
        notePass(call, isWhole ? orderOfSamplers(call.idOf(0).value_or(0)) : std::nullopt, call.isTrue(2));
    } else if (call.name() == "QL_blitRenderTarget") {
        const RenderTarget& source = Context::Instance().FindRenderTarget(call.idOf(0).value_or(0));
        notePass(call, orderOf(source.textureName.get()), call.isTrue(2));
    } else if (call.name() == "QL_surfaceCopyTo" || call.name() == "QL_initRenderTarget") {
        const double id = call.name() == "QL_initRenderTarget" ? call.resultNumber() : call.idOf(1).value_or(0);
        orders.erase(Context::Instance().FindRenderTarget(static_cast<std::uint32_t>(id)).textureName.get());
    }
}

std::optional<bool> FlipChecks::orderOf(std::uint32_t glTexture) const {
    if (glTexture == 0) return {};
    if (glTexture == Context::Instance().FindTexture(Context::Instance().CurrentSequence().texture).textureName.get())
        return true;
    const auto found = orders.find(glTexture);
    return found == orders.end() ? std::nullopt : std::optional(found->second);
}

std::optional<bool> FlipChecks::orderOfSamplers(std::uint32_t shaderId) const {
    std::optional<bool> order;
    for (const Parameter& uniform : Context::Instance().FindShader(shaderId).parameters) {
        if (ControlKindOf(uniform.kind).uniformType != UniformType::sampler2D) continue;
        const std::optional<bool> one = orderOf(uniform.wordValue());
        if (one && order && *one != *order) return {};
        if (one) order = one;
    }
    return order;
}

void FlipChecks::notePass(const NativeCall& call, std::optional<bool> source, bool flips) {
    const std::uint32_t id = call.idOf(1).value_or(0);
    const std::uint32_t glTexture = Context::Instance().FindRenderTarget(id).textureName.get();
    if (id == Context::Instance().CurrentSequence().renderTarget) lastPass = run.findings.placeOf(call);
    if (source)
        orders[glTexture] = *source != flips;
    else
        orders.erase(glTexture);
}

}  // namespace quillon::cli
