#pragma once

#include <span>
#include <string_view>

namespace quillon::cli {

// The page in the author's browser, as it is in cli/preview/page.
struct PageFile {
    std::string_view name;
    std::string_view content;
};
std::span<const PageFile> PageFiles();

}  // namespace quillon::cli
