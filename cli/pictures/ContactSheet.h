#pragma once

#include <cstddef>
#include <map>
#include <mutex>
#include <string>

#include "cli/pictures/Picture.h"

namespace quillon::cli {

// Small pictures side by side, each above its label. Pictures are brought to a whole fraction of their size, so that a
// row of them takes at most 1920 pixels, and lie on gray where they are transparent. Any thread may add.
class ContactSheet {
public:
    static constexpr std::size_t kMostPictures = 400;

    // Up to kMostPictures; zero columns: as many as rows, or one more.
    ContactSheet(std::size_t count, std::size_t columns);

    // A picture in a host's form at its place in the sheet, from 0, row by row. ASCII letters of the label are drawn,
    // and "?" for all others.
    void add(std::size_t place, const Picture& picture, std::string label);

    // All that were added, 8 bits in a host's form.
    Picture draw() const;

private:
    struct Cell {
        Picture picture;
        std::string label;
    };
    const std::size_t pictureCount;
    const std::size_t columnCount;
    std::mutex mutex;
    std::map<std::size_t, Cell> cells;
};

}  // namespace quillon::cli
