#include "imagelib/OctreePalette.h"

#include <algorithm>

namespace quillon::ImageLib {

namespace {

constexpr int kDepth = 7;

// Seven levels hold less than 2^24 nodes.
constexpr int kNodeBits = 24;

// A table takes as much memory as the nodes of some twenty leaves; it is made once as many have been walked to.
constexpr std::uint32_t kWalksForTable = 32;

std::uint64_t Rank(std::uint64_t entry) {
    return entry >> kNodeBits;
}

std::uint32_t NodeIn(std::uint64_t entry) {
    return static_cast<std::uint32_t>(entry & ((1u << kNodeBits) - 1));
}

}  // namespace

OctreePalette::OctreePalette() : nodes(1), childTables(1), heap(1) {}

std::uint32_t OctreePalette::walkToLeaf(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    std::uint32_t node = 0;
    for (int depth = 1; depth <= kDepth; ++depth) {
        const int bit = 8 - depth;
        const std::size_t index = (green >> bit & 1) * 4 + (red >> bit & 1) * 2 + (blue >> bit & 1);
        std::uint32_t child = childTables[nodes[node].children][index];
        if (child == 0) {
            child = static_cast<std::uint32_t>(nodes.size());
            childTables[nodes[node].children][index] = child;
            ++nodes[node].childCount;
            Node& fresh = nodes.emplace_back();
            fresh.depth = static_cast<std::uint8_t>(depth);
            fresh.parent = node;
            if (depth < kDepth) {
                fresh.children = static_cast<std::uint32_t>(childTables.size());
                childTables.emplace_back();
            }
        }
        node = child;
    }
    std::unique_ptr<LeafTable>& table = leafTables[(red >> 4) << 8 | (green >> 4) << 4 | blue >> 4];
    ++walks;
    if (!table) {
        if (walks < kWalksForTable * (leafTableCount + 1)) return node;
        table = std::make_unique<LeafTable>();
        ++leafTableCount;
    }
    (*table)[(red >> 1 & 7) << 6 | (green >> 1 & 7) << 3 | (blue >> 1 & 7)] = node;
    return node;
}

// Fewer children come first, then a smaller count in units of the depth.
std::uint64_t OctreePalette::heapEntry(std::uint32_t node) const {
    const Node& n = nodes[node];
    return (std::uint64_t{n.childCount} << 32 | n.count >> n.depth) << kNodeBits | node;
}

void OctreePalette::place(std::uint32_t slot, std::uint64_t entry) {
    heap[slot] = entry;
    nodes[NodeIn(entry)].slot = slot;
}

void OctreePalette::addToHeap(std::uint32_t node) {
    if (nodes[node].slot != 0) {
        heap[nodes[node].slot] = heapEntry(node);
        siftDown(nodes[node].slot);
    } else {
        heap.push_back(0);
        place(static_cast<std::uint32_t>(heap.size() - 1), heapEntry(node));
    }
    siftUp(nodes[node].slot);
}

std::uint32_t OctreePalette::takeFirst() {
    const std::uint32_t first = NodeIn(heap[1]);
    place(1, heap.back());
    heap.pop_back();
    siftDown(1);
    return first;
}

void OctreePalette::siftUp(std::uint32_t slot) {
    const std::uint64_t entry = heap[slot];
    const std::uint32_t start = slot;
    for (; slot > 1 && Rank(entry) < Rank(heap[slot / 2]); slot /= 2) place(slot, heap[slot / 2]);
    if (slot != start) place(slot, entry);
}

// Of two children that tie, the left one is compared.
void OctreePalette::siftDown(std::uint32_t slot) {
    const std::uint64_t entry = heap[slot];
    const std::uint32_t start = slot;
    const auto end = static_cast<std::uint32_t>(heap.size());
    for (std::uint32_t child = slot * 2; child < end; child = slot * 2) {
        if (child + 1 < end && Rank(heap[child + 1]) < Rank(heap[child])) ++child;
        if (Rank(heap[child]) >= Rank(entry)) break;
        place(slot, heap[child]);
        slot = child;
    }
    if (slot != start) place(slot, entry);
}

void OctreePalette::reduceTo(std::span<Pixel32> palette) {
    while (heap.size() > palette.size() + 1) {
        const Node& node = nodes[takeFirst()];
        Node& parent = nodes[node.parent];
        parent.count += node.count;
        parent.red += node.red;
        parent.green += node.green;
        parent.blue += node.blue;
        --parent.childCount;
        addToHeap(node.parent);
    }
    std::fill(palette.begin(), palette.end(), Pixel32{0, 0, 0, 0});
    for (std::size_t slot = 1; slot < heap.size(); ++slot) {
        const Node& node = nodes[NodeIn(heap[slot])];
        const double f = 1.0 / node.count;
        const auto mean = [f](std::uint64_t sum) { return static_cast<float>((static_cast<double>(sum) * f) / 255.0); };
        palette[slot - 1] = {1.0f, mean(node.red), mean(node.green), mean(node.blue)};
    }
}

}  // namespace quillon::ImageLib
