#pragma once

#include <string_view>

namespace quillon::cli {

// A file that the tool carries in itself, with the content that it has in the repository.
struct CarriedFile {
    std::string_view name;  // relative to its folder, with '/'
    std::string_view content;
};

}  // namespace quillon::cli
