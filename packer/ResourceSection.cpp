// Writes what ResourceDirectory.cpp reads: directories level by level, data entries, texts, then the data.

#include <algorithm>

#include "packer/FileError.h"
#include "packer/PortableExecutableRecords.h"
#include "packer/ResourceDirectory.h"
#include "platform/LittleEndian.h"

namespace quillon {

namespace {

std::uint64_t AlignResource(std::uint64_t value) {
    return AlignUp(value, kResourceAlignment);
}

// The resources by type, name and language; keys and data stay where they are.
using Languages = std::map<std::uint32_t, const Resource*>;
using Names = std::map<ResourceId, Languages>;
using Types = std::map<ResourceId, Names>;

Types TreeOf(const Resources& resources) {
    Types types;
    for (const auto& [key, resource] : resources) types[key.type][key.name][key.language] = &resource;
    return types;
}

template <class Children>
std::uint64_t DirectoryBytes(const Children& children) {
    return kDirectoryHeadBytes + kDirectoryEntryBytes * children.size();
}

class SectionWriter {
public:
    SectionWriter(std::vector<std::byte>& to, const Resources& all, std::uint32_t imageAddress)
        : bytes(to), resources(all), tree(TreeOf(all)), address(imageAddress) {
        nextLanguages = nextNames = DirectoryBytes(tree);
        for (const auto& [type, names] : tree) nextLanguages += DirectoryBytes(names);
        nextEntry = nextLanguages;
        std::uint64_t allTextBytes = 0;
        for (const auto& [type, names] : tree) {
            allTextBytes += TextBytes(type);
            for (const auto& [name, languages] : names) {
                nextEntry += DirectoryBytes(languages);
                allTextBytes += TextBytes(name);
            }
        }
        nextText = nextEntry + kDataEntryBytes * resources.size();
        dataStart = size = AlignResource(nextText + allTextBytes);
        for (const auto& [key, resource] : resources) size = AlignResource(size) + resource.bytes.size();
    }

    std::uint64_t sectionBytes() const { return size; }

    void write() {
        const std::size_t start = bytes.size();
        bytes.reserve(start + size);
        directory(tree, [&](const Names& names) { return kHighBit | Take(nextNames, DirectoryBytes(names)); });
        for (const auto& [type, names] : tree) {
            directory(names,
                      [&](const Languages& each) { return kHighBit | Take(nextLanguages, DirectoryBytes(each)); });
        }
        for (const auto& [type, names] : tree) {
            for (const auto& [name, languages] : names)
                directory(languages, [&](const Resource*) { return Take(nextEntry, kDataEntryBytes); });
        }
        std::uint64_t at = dataStart;
        for (const auto& [key, resource] : resources) {
            at = AlignResource(at);
            put(address + static_cast<std::uint32_t>(at));
            put(static_cast<std::uint32_t>(resource.bytes.size()));
            put(resource.codePage);
            put(0);
            at += resource.bytes.size();
        }
        bytes.insert(bytes.end(), texts.begin(), texts.end());
        for (const auto& [key, resource] : resources) {
            bytes.resize(start + AlignResource(bytes.size() - start));
            bytes.insert(bytes.end(), resource.bytes.begin(), resource.bytes.end());
        }
    }

private:
    static std::uint64_t TextBytes(const ResourceId& id) {
        const auto* text = std::get_if<std::u16string>(&id);
        return text ? 2 + 2 * text->size() : 0;
    }

    static std::uint32_t Take(std::uint64_t& next, std::uint64_t count) {
        next += count;
        return static_cast<std::uint32_t>(next - count);
    }

    void put(std::uint32_t value) { AppendLittle(bytes, value); }

    std::uint32_t written(std::uint32_t number) { return number; }
    std::uint32_t written(const ResourceId& id) {
        const auto* text = std::get_if<std::u16string>(&id);
        if (!text) return std::get<std::uint32_t>(id);
        AppendLittle(texts, static_cast<std::uint16_t>(text->size()));
        for (const char16_t unit : *text) AppendLittle(texts, unit);
        return kHighBit | Take(nextText, TextBytes(id));
    }

    static bool IsText(std::uint32_t) { return false; }
    static bool IsText(const ResourceId& id) { return std::holds_alternative<std::u16string>(id); }

    template <class Children, class OffsetOf>
    void directory(const Children& children, const OffsetOf& offsetOf) {
        const auto named = static_cast<std::size_t>(
            std::ranges::count_if(children, [](const auto& child) { return IsText(child.first); }));
        if (children.size() > 0xFFFF)
            throw FileError("", "more than 65535 resources of one kind", "use another module");
        for (int i = 0; i < 3; ++i) put(0);  // flags, date, version
        AppendLittle(bytes, static_cast<std::uint16_t>(named));
        AppendLittle(bytes, static_cast<std::uint16_t>(children.size() - named));
        for (const auto& [id, child] : children) {
            put(written(id));
            put(offsetOf(child));
        }
    }

    std::vector<std::byte>& bytes;
    const Resources& resources;
    const Types tree;
    const std::uint32_t address;
    std::vector<std::byte> texts;
    // Offsets in the section: where the next of each kind goes.
    std::uint64_t nextNames = 0, nextLanguages = 0, nextEntry = 0, nextText = 0, dataStart = 0, size = 0;
};

}  // namespace

void AppendResourceSection(std::vector<std::byte>& bytes, const Resources& resources, std::uint32_t address,
                           std::uint64_t mostBytes) {
    SectionWriter writer(bytes, resources, address);
    if (writer.sectionBytes() > mostBytes)
        throw FileError("",
                        "the package is too large: with " + std::to_string(writer.sectionBytes()) +
                            " bytes of resources the module would not stay below 2 GiB",
                        "use fewer or smaller files");
    writer.write();
}

}  // namespace quillon
