#include "imagelib/ImagePrechecks.h"

namespace quillon {

namespace {

// A position in a file. After the end all bytes read as 0.
class ByteCursor {
public:
    explicit ByteCursor(std::span<const std::byte> bytes) : file(bytes) {}

    bool atEnd() const { return position >= file.size(); }
    std::uint64_t left() const { return atEnd() ? 0 : file.size() - position; }
    void skip(std::uint64_t count) { position += count; }
    unsigned peek() const { return atEnd() ? 0 : std::to_integer<unsigned>(file[position]); }
    unsigned next() {
        const unsigned value = peek();
        ++position;
        return value;
    }
    unsigned nextWord() {
        const unsigned high = next();
        return high << 8 | next();
    }
    // Steps past the next line feed.
    void skipLine() {
        while (!atEnd() && next() != '\n') {
        }
    }

private:
    std::span<const std::byte> file;
    std::uint64_t position = 0;
};

namespace Marker {
constexpr unsigned kPrefix = 0xFF;
constexpr unsigned kHuffmanTables = 0xC4;
constexpr unsigned kStartOfImage = 0xD8;
constexpr unsigned kEndOfImage = 0xD9;
// No segment follows these; 0 is a coded 0xFF within a scan.
constexpr bool StandsAlone(unsigned marker) {
    return marker < 0x02 || (marker >= 0xD0 && marker <= kStartOfImage);
}
}  // namespace Marker

// The marker's second byte, after the first, which may be repeated any number of times.
unsigned NextMarker(ByteCursor& cursor) {
    while (cursor.peek() == Marker::kPrefix) cursor.skip(1);
    return cursor.next();
}

// One segment of Huffman tables, from its length word on: a byte for the table's class and place, 16 counts of codes by
// length, then a byte a code; repeated until the length is used up.
bool SegmentOverflows(ByteCursor cursor) {
    constexpr unsigned kLengths = 16;
    constexpr unsigned kMostCodes = 256;
    std::int64_t left = std::int64_t{cursor.nextWord()} - 2;
    while (left > 0 && !cursor.atEnd()) {
        cursor.skip(1);
        unsigned codes = 0;
        for (unsigned i = 0; i < kLengths; ++i) codes += cursor.next();
        if (codes > kMostCodes) return true;
        cursor.skip(codes);
        left -= 1 + kLengths + codes;
    }
    return false;
}

}  // namespace

bool JpegTablesOverflow(std::span<const std::byte> file) {
    ByteCursor cursor(file);
    if (cursor.next() != Marker::kPrefix || NextMarker(cursor) != Marker::kStartOfImage) return false;

    // From marker to marker as the decoder goes: segments are stepped over whole, since a color profile or a thumbnail
    // may hold any bytes, and what follows the picture's end, such as a phone's short film, is not looked at.
    while (!cursor.atEnd()) {
        if (cursor.next() != Marker::kPrefix) continue;
        const unsigned marker = NextMarker(cursor);
        if (marker == Marker::kEndOfImage) break;
        if (Marker::StandsAlone(marker)) continue;
        if (marker == Marker::kHuffmanTables && SegmentOverflows(cursor)) return true;
        const unsigned length = ByteCursor(cursor).nextWord();
        cursor.skip(length);
    }
    return false;
}

bool RadianceIsCutShort(std::span<const std::byte> file, std::uint32_t width, std::uint32_t height) {
    ByteCursor cursor(file);
    // The header ends at an empty line, or at what is one to a reader of C strings.
    while (cursor.peek() != '\n' && cursor.peek() != 0) cursor.skipLine();
    cursor.skipLine();
    cursor.skipLine();  // the extent

    const std::uint64_t flatBytes = std::uint64_t{4} * width * height;
    if (width < 8 || width >= 32768) return cursor.left() < flatBytes;
    for (std::uint32_t y = 0; y < height; ++y) {
        ByteCursor row = cursor;
        const bool isPacked = row.next() == 2 && row.next() == 2 && (row.next() & 0x80) == 0;
        // A row that is not packed makes the decoder take all that follows for the whole picture, unpacked.
        if (!isPacked) return cursor.left() < flatBytes;
        cursor.skip(4);
        // Four channels, one after the other: runs of one value (its count above 128) and stretches of single ones.
        for (std::uint64_t described = 0; described < std::uint64_t{4} * width;) {
            if (cursor.atEnd()) return true;
            const unsigned count = cursor.next();
            const bool isRun = count > 128;
            const unsigned stored = isRun ? 1 : count;
            if (cursor.left() < stored) return true;
            cursor.skip(stored);
            described += isRun ? count - 128 : count;
        }
    }
    return false;
}

}  // namespace quillon
