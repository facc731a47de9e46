#include "support/TestEffect.h"

#include <dlfcn.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "packer/Archive.h"
#include "packer/ModuleWriter.h"

namespace quillon::test {

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "quillon-test-XXXXXX").string();
    if (!mkdtemp(name.data())) throw std::runtime_error("no temporary folder");
    folder = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}

TestEffect::TestEffect(const Files& files, const std::filesystem::path& templateModule) {
    std::vector<PackageFile> packageFiles;
    for (const auto& [name, content] : files) {
        PackageFile& file = packageFiles.emplace_back();
        file.name = name;
        file.bytes.resize(content.size());
        if (!content.empty()) std::memcpy(file.bytes.data(), content.data(), content.size());
    }
    WriteModule(file(), templateModule, Scramble(WriteArchive(packageFiles)));
    handle = dlopen(file().c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!handle) throw std::runtime_error(dlerror());
}

TestEffect::~TestEffect() {
    if (handle) dlclose(handle);
}

}  // namespace quillon::test
