#include "packer/ModuleWriter.h"

#include <cstdint>
#include <string>
#include <vector>

#include "packer/FileError.h"
#include "packer/PortableExecutable.h"
#include "packer/WholeFile.h"
#include "packer/WindowsModule.h"
#include "platform/ModuleTrailer.h"

namespace quillon {

namespace {

namespace fs = std::filesystem;

// Takes off the piece that the module ends in, if it does.
void RemovePiece(std::vector<std::byte>& module, const ModuleMark& mark) {
    if (const auto piece = PieceAtEnd(module, mark)) module.resize(module.size() - kModuleTrailerBytes - piece->size());
}

void AppendPiece(std::vector<std::byte>& module, std::span<const std::byte> piece, const ModuleMark& mark) {
    const ModuleTrailer trailer = MakeModuleTrailer(static_cast<std::uint32_t>(piece.size()), mark);
    module.reserve(module.size() + piece.size() + trailer.size());
    module.insert(module.end(), piece.begin(), piece.end());
    module.insert(module.end(), trailer.begin(), trailer.end());
}

// The module with the same package and description whatever it has been made into.
std::vector<std::byte> WithoutEffect(std::vector<std::byte> module) {
    constexpr std::byte kNone[1] = {};
    if (IsPortableExecutable(module)) return MakeWindowsModule(module, kNone, kNone);
    RemovePiece(module, kModuleTrailerMark);
    RemovePiece(module, kListingMark);
    return module;
}

}  // namespace

void WriteModule(const fs::path& output, const fs::path& templateModule, std::span<const std::byte> scrambledPackage,
                 std::span<const std::byte> description) {
    if (scrambledPackage.size() > 0xFFFFFFFF)
        throw FileError("", "the package is too large, it must stay below 4 GiB", "use fewer or smaller files");
    std::vector<std::byte> module = ReadWholeFile(templateModule);
    if (!IsPortableExecutable(module)) {
        module = WithoutEffect(std::move(module));
        if (!description.empty()) AppendPiece(module, description, kListingMark);
        AppendPiece(module, scrambledPackage, kModuleTrailerMark);
    } else {
        try {
            module = MakeWindowsModule(module, scrambledPackage, description);
        } catch (const FileError& error) {
            throw error.at(templateModule.string());
        }
    }
    WriteWholeFile(output, module);
}

bool IsMadeFrom(const fs::path& module, const fs::path& templateModule) {
    return WithoutEffect(ReadWholeFile(module)) == WithoutEffect(ReadWholeFile(templateModule));
}

}  // namespace quillon
