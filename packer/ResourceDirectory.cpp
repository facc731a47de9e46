#include "packer/ResourceDirectory.h"

#include "packer/FileError.h"
#include "packer/PortableExecutableRecords.h"
#include "platform/LittleEndian.h"

namespace quillon {

namespace {

constexpr std::size_t kMostTextUnits = 1 << 23;  // of all keys together

class Reader {
public:
    Reader(std::span<const std::byte> directory, const ImageBytes& bytesOfImage)
        : section(directory), imageBytes(bytesOfImage), entriesLeft(directory.size() / kDirectoryEntryBytes) {}

    Resources read() {
        Resources resources;
        eachEntry(0, [&](std::uint32_t typeId, std::uint32_t names) {
            const ResourceId type = idOf(typeId);
            eachEntry(Below(names), [&](std::uint32_t nameId, std::uint32_t languages) {
                const ResourceId name = idOf(nameId);
                eachEntry(Below(languages), [&](std::uint32_t language, std::uint32_t data) {
                    if ((language | data) & kHighBit) Fail("has another form than type, name, language");
                    countText(type);
                    countText(name);
                    resources.try_emplace({type, name, language}, resourceAt(data));
                });
            });
        });
        return resources;
    }

private:
    [[noreturn]] static void Fail(const char* why) {
        throw FileError("", std::string("its resource directory ") + why, "use another module");
    }

    std::span<const std::byte> at(std::size_t offset, std::size_t size) const {
        if (offset > section.size() || size > section.size() - offset) Fail("reaches outside of its section");
        return section.subspan(offset, size);
    }

    static std::uint32_t Below(std::uint32_t offset) {
        if (!(offset & kHighBit)) Fail("has another form than type, name, language");
        return offset & ~kHighBit;
    }

    // Entries of a sound directory do not overlap: without this count a few that share their children take for ever.
    template <class Visit>
    void eachEntry(std::uint32_t offset, const Visit& visit) {
        const auto head = at(offset, kDirectoryHeadBytes);
        const std::size_t count = std::size_t{LoadLittle<std::uint16_t>(head, kDirectoryNamedCount)} +
                                  LoadLittle<std::uint16_t>(head, kDirectoryIdCount);
        if (count > entriesLeft) Fail("has more entries than its section has room for");
        entriesLeft -= count;
        const auto entries = at(offset + kDirectoryHeadBytes, count * kDirectoryEntryBytes);
        for (std::size_t i = 0; i < count; ++i) {
            visit(LoadLittle<std::uint32_t>(entries, i * kDirectoryEntryBytes),
                  LoadLittle<std::uint32_t>(entries, i * kDirectoryEntryBytes + 4));
        }
    }

    ResourceId idOf(std::uint32_t id) {
        if (!(id & kHighBit)) return id;
        const std::size_t offset = id & ~kHighBit;
        const std::size_t length = LoadLittle<std::uint16_t>(at(offset, 2), 0);
        const auto units = at(offset + 2, 2 * length);
        std::u16string text;
        for (std::size_t i = 0; i < length; ++i) text.push_back(LoadLittle<char16_t>(units, 2 * i));
        countText(text);
        return text;
    }

    // Entries may share their texts, but each key has a copy.
    void countText(const ResourceId& id) {
        const auto* text = std::get_if<std::u16string>(&id);
        if (!text) return;
        if (text->size() > textUnitsLeft) Fail("has too long names");
        textUnitsLeft -= text->size();
    }

    Resource resourceAt(std::uint32_t offset) const {
        const auto entry = at(offset, kDataEntryBytes);
        return {imageBytes(LoadLittle<std::uint32_t>(entry, 0), LoadLittle<std::uint32_t>(entry, 4)),
                LoadLittle<std::uint32_t>(entry, 8)};
    }

    std::span<const std::byte> section;
    const ImageBytes& imageBytes;
    std::size_t entriesLeft;
    std::size_t textUnitsLeft = kMostTextUnits;
};

}  // namespace

Resources ReadResourceDirectory(std::span<const std::byte> section, const ImageBytes& imageBytes) {
    return Reader(section, imageBytes).read();
}

}  // namespace quillon
