#pragma once

#include <string_view>

namespace quillon::cli {

// What `new` writes beside fx.js for editors: the declarations of the script API, and the project file that names them.
// The content is that of share/ in the repository.
struct EditorFile {
    const char* name;
    std::string_view content;
};
extern const EditorFile kEditorFiles[2];

}  // namespace quillon::cli
