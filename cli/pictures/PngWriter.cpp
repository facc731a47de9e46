#include <emmintrin.h>
#include <libdeflate.h>

#include <array>
#include <cstring>
#include <memory>
#include <string_view>

#include "cli/pictures/PictureFormat.h"

// PNG files of one fixed form, fast: each row is filtered by the one of three filters whose bytes are closest to 0, and
// all rows are compressed at once. Frames of one sequence have one color type, whatever is on them.

namespace quillon::cli {

namespace {

constexpr std::uint8_t kFilters[] = {1, 2, 4};  // Sub, Up, Paeth, in the order of Candidates
constexpr std::size_t kFilterCount = std::size(kFilters);
constexpr std::size_t kVector = sizeof(__m128i);

__m128i Load(const std::uint8_t* bytes) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(bytes));
}

void Store(std::uint8_t* bytes, __m128i vector) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(bytes), vector);
}

__m128i Choose(__m128i mask, __m128i set, __m128i unset) {
    return _mm_or_si128(_mm_and_si128(mask, set), _mm_andnot_si128(mask, unset));
}

__m128i NotAbove(__m128i low, __m128i high) {
    return _mm_cmpeq_epi8(_mm_min_epu8(low, high), low);
}

__m128i Distance(__m128i a, __m128i b) {
    return _mm_or_si128(_mm_subs_epu8(a, b), _mm_subs_epu8(b, a));
}

// Whichever of left, above and their common neighbor is closest to left + above - corner. The distance to the corner
// is the sum of the two others where they point the same way; that it saturates changes no comparison.
__m128i Paeth(__m128i left, __m128i above, __m128i corner) {
    const __m128i toLeft = Distance(above, corner);
    const __m128i toAbove = Distance(left, corner);
    const __m128i isSameWay = _mm_cmpeq_epi8(NotAbove(corner, above), NotAbove(corner, left));
    const __m128i toCorner = Choose(isSameWay, _mm_adds_epu8(toLeft, toAbove), Distance(toLeft, toAbove));
    const __m128i isLeft = _mm_and_si128(NotAbove(toLeft, toAbove), NotAbove(toLeft, toCorner));
    return Choose(isLeft, left, Choose(NotAbove(toAbove, toCorner), above, corner));
}

// A row's bytes with room in front for the pixel that is left of the first, which is 0, and at the end for whole
// vectors.
class Row {
public:
    explicit Row(std::size_t rowBytes) : memory(kVector + rowBytes + kVector) {}
    std::uint8_t* bytes() { return memory.data() + kVector; }
    const std::uint8_t* bytes() const { return memory.data() + kVector; }

private:
    std::vector<std::uint8_t> memory;
};

// The row in all filters.
class Candidates {
public:
    explicit Candidates(std::size_t rowBytes) : size(rowBytes), rows(kFilterCount, Row(rowBytes)) {}

    // Writes the best one and the number of its filter in front: rowBytes + 1 bytes.
    void filter(const Row& current, const Row& previous, std::size_t pixelBytes, std::uint8_t* out) {
        __m128i sums[kFilterCount] = {};
        const __m128i zero = _mm_setzero_si128();
        for (std::size_t i = 0; i < size; i += kVector) {
            const std::uint8_t* const at = current.bytes() + i;
            const std::uint8_t* const up = previous.bytes() + i;
            const __m128i raw = Load(at), left = Load(at - pixelBytes), above = Load(up);
            const __m128i predicted[] = {left, above, Paeth(left, above, Load(up - pixelBytes))};
            for (std::size_t k = 0; k < kFilterCount; ++k) {
                const __m128i difference = _mm_sub_epi8(raw, predicted[k]);
                Store(rows[k].bytes() + i, difference);
                const __m128i absolute = _mm_min_epu8(difference, _mm_sub_epi8(zero, difference));
                sums[k] = _mm_add_epi64(sums[k], _mm_sad_epu8(absolute, zero));
            }
        }
        std::size_t best = 0;
        std::uint64_t least = ~std::uint64_t{0};
        for (std::size_t k = 0; k < kFilterCount; ++k) {
            std::uint64_t halves[2];
            std::memcpy(halves, &sums[k], sizeof(halves));
            const std::uint64_t sum = halves[0] + halves[1];
            if (sum < least) least = sum, best = k;
        }
        *out = kFilters[best];
        std::memcpy(out + 1, rows[best].bytes(), size);
    }

private:
    std::size_t size;
    std::vector<Row> rows;
};

// PNG's words are big-endian. In place, and over the end up to a whole vector.
void SwapWordVectors(std::uint8_t* bytes, std::size_t count) {
    for (std::size_t i = 0; i < count; i += kVector) {
        const __m128i words = Load(bytes + i);
        Store(bytes + i, _mm_or_si128(_mm_slli_epi16(words, 8), _mm_srli_epi16(words, 8)));
    }
}

template <class Sample>
void DropAlpha(std::uint8_t* bytes, std::uint32_t width) {
    auto* to = reinterpret_cast<Sample*>(bytes);
    const auto* from = to;
    for (std::uint32_t x = 0; x < width; ++x, from += 4, to += 3) std::memmove(to, from, 3 * sizeof(Sample));
}

// The rows as they are compressed: each with its filter in front.
std::vector<std::uint8_t> FilterRows(const Picture& picture, SampleFormat format, const StorageOptions& options) {
    const std::size_t sampleBytes = SampleBytes(format);
    const std::size_t pixelBytes = sampleBytes * (options.hasAlpha ? 4 : 3);
    const std::size_t rowBytes = pixelBytes * picture.width;
    const std::size_t wholeRowBytes = 4 * sampleBytes * picture.width;
    Row current(wholeRowBytes), previous(wholeRowBytes);
    Candidates candidates(rowBytes);
    std::vector<std::uint8_t> filtered((rowBytes + 1) * picture.height);
    for (std::uint32_t y = 0; y < picture.height; ++y) {
        std::uint8_t* const bytes = current.bytes();
        ConvertRow(picture, y, format, ChannelOrder::rgba, reinterpret_cast<std::byte*>(bytes));
        if (!options.hasAlpha && sampleBytes == 1) DropAlpha<std::uint8_t>(bytes, picture.width);
        if (!options.hasAlpha && sampleBytes == 2) DropAlpha<std::uint16_t>(bytes, picture.width);
        if (sampleBytes == 2) SwapWordVectors(bytes, rowBytes);
        // Both rows are 0 past their end, where the sums count a few bytes too many.
        std::memset(bytes + rowBytes, 0, kVector);
        candidates.filter(current, previous, pixelBytes, filtered.data() + (rowBytes + 1) * y);
        std::swap(current, previous);
    }
    return filtered;
}

void Append(std::vector<std::byte>& file, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) file.push_back(static_cast<std::byte>(number >> shift));
}

void AppendText(std::vector<std::byte>& file, std::string_view text) {
    for (const char c : text) file.push_back(static_cast<std::byte>(c));
}

// Around what `append` adds: its length, the chunk's name and a checksum.
template <class Content>
void AppendChunk(std::vector<std::byte>& file, std::string_view name, Content append) {
    const std::size_t start = file.size();
    Append(file, 0);
    AppendText(file, name);
    append();
    const std::size_t checked = file.size() - start - 4;
    std::vector<std::byte> length;
    Append(length, static_cast<std::uint32_t>(checked - 4));
    std::copy(length.begin(), length.end(), file.begin() + static_cast<std::ptrdiff_t>(start));
    Append(file, libdeflate_crc32(0, file.data() + start + 4, checked));
}

struct CompressorEnd {
    void operator()(libdeflate_compressor* compressor) const { libdeflate_free_compressor(compressor); }
};

void AppendCompressed(std::vector<std::byte>& file, const std::vector<std::uint8_t>& bytes, int level) {
    const std::unique_ptr<libdeflate_compressor, CompressorEnd> compressor(libdeflate_alloc_compressor(level));
    if (!compressor) throw std::bad_alloc();
    const std::size_t start = file.size();
    file.resize(start + libdeflate_zlib_compress_bound(compressor.get(), bytes.size()));
    file.resize(start + libdeflate_zlib_compress(compressor.get(), bytes.data(), bytes.size(), file.data() + start,
                                                 file.size() - start));
}

}  // namespace

// 8 bits as 8; 16 bits, and floats cut to 0 to 1, as 16.
std::vector<std::byte> WritePng(const Picture& picture, const StorageOptions& options) {
    const SampleFormat format = BitDepth(picture.format) == 8 ? SampleFormat::byte : SampleFormat::word;
    const std::vector<std::uint8_t> rows = FilterRows(picture, format, options);
    std::vector<std::byte> file;
    AppendText(file, {"\x89PNG\r\n\x1a\n", 8});
    AppendChunk(file, "IHDR", [&] {
        Append(file, picture.width);
        Append(file, picture.height);
        const char colorType = options.hasAlpha ? 6 : 2;
        // Compression, filters and interlacing have one number each that is in use.
        AppendText(file, {std::array{static_cast<char>(BitDepth(format)), colorType, '\0', '\0', '\0'}.data(), 5});
    });
    AppendChunk(file, "IDAT", [&] { AppendCompressed(file, rows, options.pngLevel); });
    AppendChunk(file, "IEND", [] {});
    return file;
}

}  // namespace quillon::cli
