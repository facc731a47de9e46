#include "platform/TemporaryFolder.h"

#include <random>
#include <string>
#include <system_error>

namespace quillon {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
    const fs::path place = fs::temp_directory_path();
    std::random_device random;
    do folder = place / ("quillon-" + std::to_string(random()));
    while (!fs::create_directory(folder));  // false when somebody has one of that name
    fs::permissions(folder, fs::perms::owner_all);
}

TemporaryFolder::~TemporaryFolder() {
    remove();
}

bool TemporaryFolder::remove() {
    std::error_code error;
    fs::remove_all(folder, error);
    return !error;
}

}  // namespace quillon
