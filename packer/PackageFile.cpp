#include "packer/PackageFile.h"

#include <map>
#include <string_view>

#include "packer/FileError.h"

namespace quillon {

namespace {

constexpr std::size_t kMostFiles = 0xFFFF;
constexpr std::size_t kLongestName = 0xFFFF;

std::string FoldAsciiCase(std::string name) {
    for (char& character : name)
        if (character >= 'A' && character <= 'Z') character = static_cast<char>(character - 'A' + 'a');
    return name;
}

}  // namespace

void CheckPackageNames(const std::vector<std::string>& names) {
    if (names.size() > kMostFiles)
        throw FileError("", std::to_string(names.size()) + " files, and a package holds at most 65535",
                        "use fewer files");
    std::map<std::string, const std::string*> seen;
    for (const std::string& name : names) {
        if (name.empty() || name.size() > kLongestName)
            throw FileError("", "a file's name has " + std::to_string(name.size()) + " bytes", "give it 1 to 65535");
        if (name.find_first_of(std::string_view("/\\:\0", 4)) != std::string::npos)
            throw FileError("", "'" + name + "' holds '/', '\\', ':' or zero, which no name in a package can",
                            "rename the file");
        if (const auto [other, isNew] = seen.emplace(FoldAsciiCase(name), &name); !isNew)
            throw FileError(
                "",
                "'" + *other->second + "' and '" + name + "' are the same name in a package, where case does not count",
                "rename one");
    }
}

}  // namespace quillon
