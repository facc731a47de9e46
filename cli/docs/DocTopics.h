#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/docs/DocBlocks.h"

namespace quillon::cli {

// The pages of docs/, which the tool carries.
struct DocTopic {
    std::string name;   // of the page, without its ending
    std::string title;  // its first heading
};
std::vector<DocTopic> DocTopics();  // by name

// A page by its name; a function, a constant's table or an entry point of the script API; a command of the tool; or the
// part below a heading, by its words. Capitals count as small letters. Nothing when there is none.
std::optional<std::vector<DocBlock>> FindDoc(const std::string& topic);

// All names that FindDoc knows, but those of headings.
std::vector<std::string> DocNames();

}  // namespace quillon::cli
