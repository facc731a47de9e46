#include <deque>

#include "reference/PlainQuantize.h"

namespace quillon::reference {

namespace {

struct Node {
    std::uint64_t red = 0, green = 0, blue = 0;
    std::uint32_t count = 0;
    std::uint32_t heapIndex = 0;
    std::uint8_t childCount = 0;
    std::uint8_t indexInParent = 0;
    bool inHeap = false;
    std::uint8_t depth = 0;
    Node* children[8] = {};
    Node* parent = nullptr;
};

bool ComesBefore(const Node* a, const Node* b) {
    if (a->childCount != b->childCount) return a->childCount < b->childCount;
    return static_cast<std::int32_t>(a->count >> a->depth) < static_cast<std::int32_t>(b->count >> b->depth);
}

class Heap {
public:
    std::uint32_t size() const { return static_cast<std::uint32_t>(slots.size()); }  // slot 0 counts, and is unused
    Node* at(std::uint32_t slot) const { return slots[slot]; }

    void add(Node* node) {
        if (node->inHeap) {
            siftDown(node->heapIndex);
        } else {
            node->inHeap = true;
            node->heapIndex = size();
            slots.push_back(node);
        }
        siftUp(node->heapIndex);
    }

    Node* takeFirst() {
        Node* first = slots[1];
        place(1, slots.back());
        slots.pop_back();
        if (size() > 1) siftDown(1);
        return first;
    }

private:
    void place(std::uint32_t slot, Node* node) {
        slots[slot] = node;
        node->heapIndex = slot;
    }
    void exchange(std::uint32_t a, std::uint32_t b) {
        Node* node = slots[a];
        place(a, slots[b]);
        place(b, node);
    }
    void siftUp(std::uint32_t slot) {
        for (; slot > 1 && ComesBefore(slots[slot], slots[slot / 2]); slot /= 2) exchange(slot, slot / 2);
    }
    void siftDown(std::uint32_t slot) {
        for (;;) {
            std::uint32_t child = slot * 2;
            if (child >= size()) return;
            if (child + 1 < size() && ComesBefore(slots[child + 1], slots[child])) ++child;
            if (!ComesBefore(slots[child], slots[slot])) return;
            exchange(slot, child);
            slot = child;
        }
    }

    std::vector<Node*> slots{nullptr};
};

}  // namespace

std::vector<ImageLib::Pixel32> PlainAdaptivePalette(std::span<const ImageLib::Pixel32> image, std::uint32_t colors) {
    std::vector<ImageLib::Pixel8> bytes;
    bytes.reserve(image.size());
    for (const auto& pixel : image)
        bytes.push_back({ImageLib::Channel8FromFloat(pixel.alpha), ImageLib::Channel8FromFloat(pixel.red),
                         ImageLib::Channel8FromFloat(pixel.green), ImageLib::Channel8FromFloat(pixel.blue)});

    std::deque<Node> pool(1);
    Heap heap;
    for (const ImageLib::Pixel8& pixel : bytes) {
        Node* node = &pool.front();
        for (int depth = 1, bit = 128; depth <= 7; ++depth, bit >>= 1) {
            const int index = 4 * !!(pixel.green & bit) + 2 * !!(pixel.red & bit) + !!(pixel.blue & bit);
            if (!node->children[index]) {
                Node& child = pool.emplace_back();
                child.depth = static_cast<std::uint8_t>(depth);
                child.indexInParent = static_cast<std::uint8_t>(index);
                child.parent = node;
                node->children[index] = &child;
                ++node->childCount;
            }
            node = node->children[index];
        }
        node->red += pixel.red;
        node->green += pixel.green;
        node->blue += pixel.blue;
        ++node->count;
        heap.add(node);
    }
    while (heap.size() > colors + 1) {
        Node* node = heap.takeFirst();
        Node* parent = node->parent;
        parent->count += node->count;
        parent->red += node->red;
        parent->green += node->green;
        parent->blue += node->blue;
        --parent->childCount;
        parent->children[node->indexInParent] = nullptr;
        heap.add(parent);
    }

    std::vector<ImageLib::Pixel32> palette(colors, ImageLib::Pixel32{0, 0, 0, 0});
    for (std::uint32_t slot = 1; slot < heap.size(); ++slot) {
        const Node& node = *heap.at(slot);
        const double f = 1.0 / node.count;
        const auto mean = [f](std::uint64_t sum) { return static_cast<float>((static_cast<double>(sum) * f) / 255.0); };
        palette[slot - 1] = {1.0f, mean(node.red), mean(node.green), mean(node.blue)};
    }
    return palette;
}

}  // namespace quillon::reference
