#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "imagelib/Pixels.h"

namespace quillon::ImageLib {

// Gathers the colors of a picture in an octree, seven levels deep, and folds the rarest into their parents until few
// enough are left. Which ones those are depends on ties in the heap, so every pixel is added in memory order and
// the heap does one operation for each; only operations that can move nothing are left out.
// Holds up to 2^31 pixels.
class OctreePalette {
public:
    OctreePalette();

    // One pixel of the picture.
    void add(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
        Node& leaf = nodes[leafOf(red, green, blue)];
        leaf.red += red;
        leaf.green += green;
        leaf.blue += blue;
        // A leaf's place in the heap follows its count in steps of 128: between them there is nothing to sift.
        if ((++leaf.count & 127) == 0 || leaf.count == 1) addToHeap(static_cast<std::uint32_t>(&leaf - nodes.data()));
    }

    // Reduces what was added to at most palette.size() colors and writes them to the front, alpha 1; the rest of the
    // slots becomes all zero. Once.
    void reduceTo(std::span<Pixel32> palette);

private:
    struct Node {
        std::uint64_t red = 0, green = 0, blue = 0;
        std::uint32_t count = 0;
        std::uint32_t parent = 0;
        std::uint32_t slot = 0;      // in the heap; 0: not in it
        std::uint32_t children = 0;  // which of childTables; unused in leaves
        std::uint8_t childCount = 0;
        std::uint8_t depth = 0;
    };
    using ChildTable = std::array<std::uint32_t, 8>;
    using LeafTable = std::array<std::uint32_t, 512>;

    // A leaf by the upper four bits of its channels and then the next three; 0 where the leaf is not known yet.
    std::uint32_t leafOf(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
        const LeafTable* table = leafTables[(red >> 4) << 8 | (green >> 4) << 4 | blue >> 4].get();
        const std::uint32_t leaf = table ? (*table)[(red >> 1 & 7) << 6 | (green >> 1 & 7) << 3 | (blue >> 1 & 7)] : 0;
        return leaf != 0 ? leaf : walkToLeaf(red, green, blue);
    }
    std::uint32_t walkToLeaf(std::uint8_t red, std::uint8_t green, std::uint8_t blue);

    std::uint64_t heapEntry(std::uint32_t node) const;
    void addToHeap(std::uint32_t node);
    std::uint32_t takeFirst();
    void siftUp(std::uint32_t slot);
    void siftDown(std::uint32_t slot);
    void place(std::uint32_t slot, std::uint64_t entry);

    std::vector<Node> nodes;  // [0] is the root
    std::vector<ChildTable> childTables;
    std::array<std::unique_ptr<LeafTable>, 4096> leafTables;
    std::uint32_t leafTableCount = 0;
    std::uint32_t walks = 0;          // from the root
    std::vector<std::uint64_t> heap;  // [0] is unused; a node's rank above its number
};

}  // namespace quillon::ImageLib
