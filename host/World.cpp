#include "host/World.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <map>
#include <mutex>
#include <stdexcept>

namespace quillon::host {

namespace {

constexpr std::size_t kStripBytes = 64;
constexpr std::byte kGuardByte{0xC3};

struct WorldList {
    std::mutex mutex;
    std::map<const void*, int> depthByPixels;
};

// Never destroyed: worlds may outlive it at the end of the process.
WorldList& LivingWorlds() {
    static auto* const kWorlds = new WorldList;
    return *kWorlds;
}

bool AllGuards(const std::byte* bytes, std::size_t count) {
    return std::all_of(bytes, bytes + count, [](std::byte byte) { return byte == kGuardByte; });
}

}  // namespace

std::size_t World::BytesNeeded(A_long width, A_long height, int bitDepth, int rowPaddingPixels) {
    const std::size_t row = (static_cast<std::size_t>(width) + static_cast<std::size_t>(rowPaddingPixels)) *
                            static_cast<std::size_t>(bitDepth) / 2;
    return row * static_cast<std::size_t>(height) + 2 * kStripBytes;
}

World::World(A_long width, A_long height, int bitDepth, int rowPaddingPixels)
    : widthPixels(width), heightPixels(height), depth(bitDepth) {
    if (width < 0 || height < 0 || rowPaddingPixels < 0) throw std::invalid_argument("a world of negative size");
    if (depth != 8 && depth != 16 && depth != 32) throw std::invalid_argument("a world's depth is 8, 16 or 32");
    usedRowBytes = static_cast<std::size_t>(width) * pixelBytes();
    strideBytes = static_cast<std::ptrdiff_t>(usedRowBytes + static_cast<std::size_t>(rowPaddingPixels) * pixelBytes());
    memory = std::make_unique_for_overwrite<std::byte[]>(BytesNeeded(width, height, depth, rowPaddingPixels));
    topRowStart = memory.get() + kStripBytes;
    std::fill_n(memory.get(), kStripBytes, kGuardByte);
    std::fill_n(rowStart(height), kStripBytes, kGuardByte);
    begin();
}

World::World(A_long width, A_long height, int bitDepth, std::byte* topRow, std::ptrdiff_t bytesToNextRow)
    : widthPixels(width), heightPixels(height), depth(bitDepth), strideBytes(bytesToNextRow), topRowStart(topRow) {
    usedRowBytes = static_cast<std::size_t>(width) * pixelBytes();
    begin();
}

// The last row in memory has no padding that belongs to this world for sure: what comes next may be another's.
std::span<std::byte> World::paddingAfter(A_long y) const {
    const bool isLastInMemory = y == (strideBytes < 0 ? 0 : heightPixels - 1);
    if (!memory && isLastInMemory) return {};
    return {rowStart(y) + usedRowBytes, static_cast<std::size_t>(std::abs(strideBytes)) - usedRowBytes};
}

// Each byte once: a frame of 4K is 133 MB at 32 bits.
void World::begin() {
    for (A_long y = 0; y < heightPixels; ++y) {
        std::fill_n(rowStart(y), usedRowBytes, kUnwrittenByte);
        std::ranges::fill(paddingAfter(y), kGuardByte);
    }
    const std::lock_guard lock(LivingWorlds().mutex);
    LivingWorlds().depthByPixels[topRowStart] = depth;
}

World::~World() {
    const std::lock_guard lock(LivingWorlds().mutex);
    LivingWorlds().depthByPixels.erase(topRowStart);
}

int World::DepthOf(const void* pixels) {
    const std::lock_guard lock(LivingWorlds().mutex);
    const auto found = LivingWorlds().depthByPixels.find(pixels);
    return found == LivingWorlds().depthByPixels.end() ? 0 : found->second;
}

std::span<std::byte> World::row(A_long y) {
    return {rowStart(y), usedRowBytes};
}
std::span<const std::byte> World::row(A_long y) const {
    return {rowStart(y), usedRowBytes};
}

std::vector<std::byte> World::tightBytes() const {
    std::vector<std::byte> tight;
    tight.reserve(tightSize());
    for (A_long y = 0; y < heightPixels; ++y) tight.insert(tight.end(), row(y).begin(), row(y).end());
    return tight;
}

void World::copyTo(std::span<std::byte> tight) const {
    if (tight.size() != tightSize()) throw std::invalid_argument("there is not as much room as the world has pixels");
    for (A_long y = 0; y < heightPixels; ++y)
        std::copy_n(rowStart(y), usedRowBytes, tight.data() + static_cast<std::size_t>(y) * usedRowBytes);
}

void World::write(std::span<const std::byte> tight) {
    if (tight.size() != tightSize()) throw std::invalid_argument("the pixels are not as many as the world has");
    for (A_long y = 0; y < heightPixels; ++y)
        std::copy_n(tight.data() + static_cast<std::size_t>(y) * usedRowBytes, usedRowBytes, rowStart(y));
}

std::shared_ptr<World> World::cut(const PF_LRect& area, int rowPaddingPixels) const {
    auto part = std::make_shared<World>(std::max(0, area.right - area.left), std::max(0, area.bottom - area.top), depth,
                                        rowPaddingPixels);
    part->pixelAspect = pixelAspect;
    const A_long left = std::max(0, area.left);
    const A_long right = std::min(widthPixels, area.right);
    for (A_long y = 0; y < part->height(); ++y) {
        std::ranges::fill(part->row(y), std::byte{0});
        const A_long from = y + area.top;
        if (from < 0 || from >= heightPixels || left >= right) continue;
        std::memcpy(part->row(y).data() + static_cast<std::size_t>(left - area.left) * pixelBytes(),
                    row(from).data() + static_cast<std::size_t>(left) * pixelBytes(),
                    static_cast<std::size_t>(right - left) * pixelBytes());
    }
    return part;
}

PF_EffectWorld World::record() const {
    PF_EffectWorld world{};
    world.world_flags = PF_WorldFlag_WRITEABLE | (depth == 8 ? 0 : PF_WorldFlag_DEEP);
    world.data = reinterpret_cast<PF_PixelPtr>(topRowStart);
    world.rowbytes = static_cast<A_long>(strideBytes);
    world.width = widthPixels;
    world.height = heightPixels;
    world.extent_hint = {0, 0, widthPixels, heightPixels};
    world.pix_aspect_ratio = pixelAspect;
    world.origin_x = origin.h;
    world.origin_y = origin.v;
    return world;
}

bool World::areGuardsIntact() const {
    if (memory && (!AllGuards(memory.get(), kStripBytes) || !AllGuards(rowStart(heightPixels), kStripBytes)))
        return false;
    for (A_long y = 0; y < heightPixels; ++y)
        if (const auto padding = paddingAfter(y); !AllGuards(padding.data(), padding.size())) return false;
    return true;
}

}  // namespace quillon::host
