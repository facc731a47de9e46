#include "packer/PiPL.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "packer/PackageError.h"
#include "platform/LittleEndian.h"

namespace quillon {

namespace {

using Bytes = std::vector<std::byte>;

struct Property {
    const char* key;
    Bytes value;
};

void appendText(Bytes& bytes, std::string_view text) {
    const auto* const first = reinterpret_cast<const std::byte*>(text.data());
    bytes.insert(bytes.end(), first, first + text.size());
}

// Four-character codes are numbers in the host's eyes, so that they stand in the file from their last character on.
void appendCode(Bytes& bytes, std::string_view code) {
    for (auto character = code.rbegin(); character != code.rend(); ++character)
        bytes.push_back(static_cast<std::byte>(*character));
}

void pad(Bytes& bytes, std::size_t headBytes = 0) {
    while ((bytes.size() - headBytes) % 4 != 0) bytes.push_back(std::byte{});
}

Bytes code(std::string_view text) {
    Bytes bytes;
    appendCode(bytes, text);
    return bytes;
}

template <class... Numbers>
Bytes numbers(Numbers... values) {
    Bytes bytes;
    (AppendLittle(bytes, values), ...);
    return bytes;
}

// The length that a property tells counts the padding of texts, unlike that of numbers.
Bytes zeroTerminated(std::string_view text) {
    Bytes bytes;
    appendText(bytes, text);
    bytes.push_back(std::byte{});
    pad(bytes);
    return bytes;
}

Bytes pascalString(const char* key, std::string_view text) {
    if (text.empty()) throw PackageError(std::string(key) + ": empty; hosts need 1 to 31 bytes of text");
    if (text.size() > kLongestIdentityText)
        throw PackageError(std::string(key) + ": '" + std::string(text) + "' has " + std::to_string(text.size()) +
                           " bytes; hosts take at most 31");
    if (std::ranges::any_of(text, [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }))
        throw PackageError(std::string(key) + ": holds a line break or another control character; take it out");
    Bytes bytes = {static_cast<std::byte>(text.size())};
    appendText(bytes, text);
    pad(bytes);
    return bytes;
}

}  // namespace

std::vector<std::byte> MakePiPL(const EffectIdentity& identity) {
    using Word = std::uint32_t;
    using Half = std::uint16_t;
    const Property properties[] = {
        {"kind", code("eFKT")},
        {"name", pascalString("FXNAME", identity.name)},
        {"catg", pascalString("CATEGORY", identity.category)},
        {"8664", zeroTerminated("EntryPointFunc")},
        {"ePVR", numbers(Half{2}, Half{0})},   // the version of this layout
        {"eSVR", numbers(Half{13}, Half{2})},  // of the effect interface, major and minor
        {"eVER", numbers(Word{identity.version})},
        {"eINF", numbers(Half{0})},
        {"eGLO", numbers(Word{identity.outFlags})},
        {"eGL2", numbers(Word{identity.outFlags2})},
        {"eMNA", pascalString("MATCH_NAME", identity.matchName)},
        {"aeFL", numbers(Word{8})},
    };
    Bytes bytes = numbers(Half{1}, Word{0}, static_cast<Word>(std::size(properties)));
    const std::size_t headBytes = bytes.size();
    for (const Property& property : properties) {
        appendCode(bytes, "8BIM");
        appendCode(bytes, property.key);
        AppendLittle(bytes, Word{0});
        AppendLittle(bytes, static_cast<Word>(property.value.size()));
        bytes.insert(bytes.end(), property.value.begin(), property.value.end());
        pad(bytes, headBytes);
    }
    return bytes;
}

}  // namespace quillon
