#include "cli/pictures/ContactSheet.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "cli/pictures/Downsample.h"
#include "cli/pictures/Label.h"
#include "cli/pictures/StreamFormats.h"

namespace quillon::cli {

namespace {

constexpr std::uint32_t kMostWidth = 1920;
constexpr std::uint32_t kGap = 8;
constexpr std::uint8_t kGray = 48;

}  // namespace

ContactSheet::ContactSheet(std::size_t count, std::size_t columns)
    : pictureCount(count),
      columnCount(columns != 0 ? columns : static_cast<std::size_t>(std::ceil(std::sqrt(static_cast<double>(count))))) {
}

void ContactSheet::add(std::size_t place, const Picture& picture, std::string label) {
    const auto most = std::max<std::size_t>(kMostWidth / columnCount, kGap + 1) - kGap;
    const auto n = static_cast<std::uint32_t>((picture.width + most - 1) / most);
    Picture small = Convert(n > 1 ? Downsample(picture, n) : picture, SampleFormat::byte, ChannelOrder::argb);
    constexpr float kShare = kGray / 255.0f;
    PlaceOver(small, {kShare, kShare, kShare});
    const std::lock_guard lock(mutex);
    cells[place] = {std::move(small), std::move(label)};
}

Picture ContactSheet::draw() const {
    std::uint32_t width = 1, height = 1;
    for (const auto& [place, cell] : cells) {
        width = std::max(width, cell.picture.width);
        height = std::max(height, cell.picture.height);
    }
    const std::uint32_t cellWidth = width + kGap, cellHeight = height + kLabelHeight + kGap;
    const auto columns = static_cast<std::uint32_t>(columnCount);
    const auto rows = static_cast<std::uint32_t>((pictureCount + columnCount - 1) / columnCount);
    Picture sheet =
        Picture::Make(kGap + columns * cellWidth, kGap + rows * cellHeight, SampleFormat::byte, ChannelOrder::argb);
    std::ranges::fill(sheet.pixels, std::byte{kGray});
    for (std::size_t i = 0; i < sheet.pixels.size(); i += 4) sheet.pixels[i] = std::byte{255};
    for (const auto& [place, cell] : cells) {
        const std::uint32_t left = kGap + static_cast<std::uint32_t>(place % columnCount) * cellWidth;
        const std::uint32_t top = kGap + static_cast<std::uint32_t>(place / columnCount) * cellHeight;
        for (std::uint32_t y = 0; y < cell.picture.height; ++y)
            std::memcpy(sheet.row<std::byte>(top + y) + std::size_t{4} * left, cell.picture.row<std::byte>(y),
                        cell.picture.rowBytes());
        DrawLabel(sheet, left, top + height, width, cell.label);
    }
    return sheet;
}

}  // namespace quillon::cli
