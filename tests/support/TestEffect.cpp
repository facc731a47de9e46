#include "support/TestEffect.h"

#include <cstring>
#include <stdexcept>

#include "host/ModuleLoading.h"
#include "packer/Archive.h"
#include "packer/ModuleWriter.h"

namespace quillon::test {

std::vector<std::byte> ScrambledPackage(const Files& files) {
    std::vector<PackageFile> package;
    for (const auto& [name, content] : files) {
        PackageFile& file = package.emplace_back();
        file.name = name;
        file.bytes.resize(content.size());
        if (!content.empty()) std::memcpy(file.bytes.data(), content.data(), content.size());
    }
    return Scramble(WriteArchive(package));
}

TestModule::TestModule(std::span<const std::byte> scrambledPackage, const std::filesystem::path& templateModule) {
    WriteModule(file(), templateModule, scrambledPackage);
    std::string reason;
    handle = host::LoadModule(file(), reason);
    if (!handle) throw std::runtime_error(reason);
}

TestModule::~TestModule() {
    host::UnloadModule(handle);
}

}  // namespace quillon::test
