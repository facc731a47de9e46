#include "frei0r/Listing.h"

#include <algorithm>
#include <bit>
#include <fstream>
#include <utility>

#include "platform/LittleEndian.h"
#include "platform/ModuleTrailer.h"

namespace quillon::frei0r {

namespace {

// The first number of every listing. It changes when the fields do.
constexpr std::uint32_t kFormat = 1;

// Numbers have 32 bits, lowest byte first; texts and lists begin with their length.
class Writer {
public:
    void field(std::uint32_t number) { AppendLittle(bytes, number); }
    void field(float number) { field(std::bit_cast<std::uint32_t>(number)); }
    void field(Role role) { field(static_cast<std::uint32_t>(role)); }
    void field(PluginType type) { field(static_cast<std::uint32_t>(type)); }
    void field(const std::array<std::byte, 16>& value) { bytes.insert(bytes.end(), value.begin(), value.end()); }
    void field(const std::string& text) {
        field(static_cast<std::uint32_t>(text.size()));
        const auto characters = std::as_bytes(std::span(text));
        bytes.insert(bytes.end(), characters.begin(), characters.end());
    }
    template <class Visit>
    void list(const std::vector<ListedControl>& controls, Visit visit) {
        field(static_cast<std::uint32_t>(controls.size()));
        for (const ListedControl& control : controls) visit(control);
    }

    std::vector<std::byte> bytes;
};

// After the first field that does not fit, all are left as they are.
class Reader {
public:
    explicit Reader(std::span<const std::byte> listing) : rest(listing) {}

    void field(std::uint32_t& number) {
        if (const auto found = take(sizeof number)) number = LoadLittle<std::uint32_t>(*found, 0);
    }
    void field(float& number) { number = std::bit_cast<float>(take32()); }
    void field(Role& role) {
        const std::uint32_t number = take32();
        if (number >= kRoleCount) isSound = false;
        if (isSound) role = static_cast<Role>(number);
    }
    void field(PluginType& type) {
        const std::uint32_t number = take32();
        if (number > static_cast<std::uint32_t>(PluginType::mixer2)) isSound = false;
        if (isSound) type = static_cast<PluginType>(number);
    }
    void field(std::array<std::byte, 16>& value) {
        if (const auto found = take(value.size())) std::copy(found->begin(), found->end(), value.begin());
    }
    void field(std::string& text) {
        if (const auto found = take(take32())) text.assign(reinterpret_cast<const char*>(found->data()), found->size());
    }
    template <class Visit>
    void list(std::vector<ListedControl>& controls, Visit visit) {
        for (std::uint32_t left = take32(); left > 0 && isSound; --left) visit(controls.emplace_back());
    }

    bool isAtEnd() const { return isSound && rest.empty(); }

private:
    std::optional<std::span<const std::byte>> take(std::size_t count) {
        if (count > rest.size()) isSound = false;
        if (!isSound) return std::nullopt;
        const auto taken = rest.first(count);
        rest = rest.subspan(count);
        return taken;
    }
    std::uint32_t take32() {
        std::uint32_t number = 0;
        field(number);
        return number;
    }

    std::span<const std::byte> rest;
    bool isSound = true;
};

// The fields in their order, for both directions.
template <class Stream, class AnyListing>
void VisitFields(Stream& stream, AnyListing& listing) {
    stream.field(listing.name);
    stream.field(listing.explanation);
    stream.field(listing.type);
    stream.field(listing.majorVersion);
    stream.field(listing.minorVersion);
    stream.field(listing.layer);
    stream.list(listing.controls, [&stream](auto& control) {
        stream.field(control.name);
        stream.field(control.explanation);
        stream.field(control.role);
        stream.field(control.declaration);
        stream.field(control.low);
        stream.field(control.high);
        stream.field(control.declared);
    });
}

// Fills `bytes` with what ends `fromEnd` bytes before the end of the file.
bool ReadBeforeEnd(std::ifstream& file, std::uint64_t fromEnd, std::span<std::byte> bytes) {
    file.seekg(-static_cast<std::streamoff>(fromEnd + bytes.size()), std::ios::end);
    return file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size())).good();
}

}  // namespace

std::vector<std::byte> WriteListing(const Listing& listing) {
    Writer writer;
    writer.field(kFormat);
    VisitFields(writer, listing);
    return std::move(writer.bytes);
}

std::optional<Listing> ReadListing(std::span<const std::byte> bytes) {
    Reader reader(bytes);
    std::uint32_t format = 0;
    reader.field(format);
    if (format != kFormat) return std::nullopt;
    Listing listing;
    VisitFields(reader, listing);
    return reader.isAtEnd() ? std::optional(std::move(listing)) : std::nullopt;
}

std::optional<Listing> ReadListingOf(const std::filesystem::path& module) {
    std::ifstream file(module, std::ios::binary | std::ios::ate);
    const auto fileBytes = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
    ModuleTrailer trailer;
    if (!ReadBeforeEnd(file, 0, trailer)) return std::nullopt;
    const auto packageBytes = BytesBefore(trailer, fileBytes);
    if (!packageBytes) return std::nullopt;
    const std::uint64_t packagePiece = *packageBytes + kModuleTrailerBytes;
    if (!ReadBeforeEnd(file, packagePiece, trailer)) return std::nullopt;
    const auto listingBytes = BytesBefore(trailer, fileBytes - packagePiece, kListingMark);
    if (!listingBytes) return std::nullopt;
    std::vector<std::byte> bytes(*listingBytes);
    if (!ReadBeforeEnd(file, packagePiece + kModuleTrailerBytes, bytes)) return std::nullopt;
    return ReadListing(bytes);
}

}  // namespace quillon::frei0r
