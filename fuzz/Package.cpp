// An archive as a module carries it, read by the engine; and the same bytes as a module file, read by the tool.
//
// Planted once: no look at the length before the end record is searched.

#include <algorithm>

#include "GivenPackage.h"
#include "Input.h"
#include "package/BlobReader.h"
#include "package/FileAccess.h"
#include "packer/Archive.h"
#include "packer/FileError.h"
#include "packer/PackageReader.h"
#include "platform/ModuleTrailer.h"
#include "platform/WideText.h"

using namespace quillon;
using Bytes = std::vector<std::byte>;

namespace {

Bytes AsModule(Bytes package) {
    const ModuleTrailer trailer = MakeModuleTrailer(static_cast<std::uint32_t>(package.size()));
    package.insert(package.end(), trailer.begin(), trailer.end());
    return package;
}

std::vector<PackageFile> FilesOf(std::span<const std::byte> module) {
    static const TemporaryFolder kFolder;
    const std::string_view bytes(reinterpret_cast<const char*>(module.data()), module.size());
    try {
        return ReadPackage(fuzz::WriteInput(kFolder.path() / "effect.module", bytes));
    } catch (const FileError&) {
        return {};
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;  // a module without a package ends its process, as the contract says
    const auto input = std::as_bytes(std::span(data, size));
    FilesOf(input);

    fuzz::givenPackage = Scramble(input);
    fuzz::Require(std::ranges::equal(Unscramble(fuzz::givenPackage), input), "scrambling is undone");
    BlobReader::Load(nullptr);
    for (const wchar_t* name : {L"fx.js", L"config.xml", L"a/b\\FX.JS", L"", L"/"}) {
        ReadFileBytes(name);
        ReadFileText(name);
    }

    for (const PackageFile& file : FilesOf(AsModule(fuzz::givenPackage))) {
        try {
            CheckPackageNames({file.name});
        } catch (const FileError&) {
            continue;  // the engine cannot ask for such a name
        }
        fuzz::Require(ReadFileBytes(WidenBytes(file.name)) == file.bytes, "engine and tool read the same");
    }
    return 0;
}
