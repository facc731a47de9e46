#include "package/BlobReader.h"

#include <cstdint>
#include <string_view>

#include "package/FileAccess.h"
#include "package/KeySchedule.h"
#include "package/ZipArchive.h"
#include "platform/FailFast.h"
#include "platform/LittleEndian.h"
#include "platform/ModuleResource.h"
#include "platform/WideText.h"

namespace quillon {

namespace {

// So that the chain has whole words to work on at the end, whatever the package's length.
constexpr std::size_t kPadding = 8;

// A '\', '/' or ':' ends a folder's name, unless nothing or another slash follows it.
std::string_view LastComponent(std::string_view path) {
    std::size_t start = 0;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        const bool separates = path[i] == '\\' || path[i] == '/' || path[i] == ':';
        if (separates && path[i + 1] != '\\' && path[i + 1] != '/') start = i + 1;
    }
    return path.substr(start);
}

std::vector<std::byte> ReadBlobBytes(const std::wstring& name) {
    return BlobReader::instance().ReadFile(name);
}

std::string ReadBlobText(const std::wstring& name) {
    const std::vector<std::byte> bytes = BlobReader::instance().ReadFile(name);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    return std::string(text.substr(0, text.find('\0')));
}

}  // namespace

BlobReader::BlobReader() = default;
BlobReader::~BlobReader() = default;

void BlobReader::Load(void* module) {
    instance().Open(module);
}

void BlobReader::Open(void* module) {
    archive.reset();
    package.clear();
    std::size_t resourceBytes = 0;
    if (auto resource = ReadModuleResource(module); resource && !resource->empty()) {
        resourceBytes = resource->size();
        package = std::move(*resource);
        package.resize(resourceBytes + kPadding);
    }

    Unscramble();

    archive = ZipArchive::Open(std::span(package).first(resourceBytes));
    if (!archive) return;
    FileTextHook = ReadBlobText;
    FileBytesHook = ReadBlobBytes;
}

void BlobReader::Unscramble() {
    // An effect without its package is no state to go on in: the chain has no end on an empty one.
    if (package.empty()) FailFast("the module carries no package");

    KeySchedule schedule;
    for (std::size_t at = 0; at + 4 <= package.size(); at += 4) {
        const std::uint32_t plain = LoadLittle<std::uint32_t>(package, at) ^ schedule.key;
        StoreLittle(package, at, plain);
        schedule.advance(plain);
    }
}

std::vector<std::byte> BlobReader::ReadFile(const std::wstring& name) {
    if (!archive) return {};
    const std::string path = NarrowToBytes(name);
    // A name ends at its first zero byte.
    return archive->Read(std::string(LastComponent(path.c_str())));
}

}  // namespace quillon
