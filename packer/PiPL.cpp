#include "packer/PiPL.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "packer/FileError.h"
#include "platform/LittleEndian.h"

namespace quillon {

namespace {

using Bytes = std::vector<std::byte>;

struct Property {
    const char* key;
    Bytes value;
};

void AppendText(Bytes& bytes, std::string_view text) {
    const auto* const first = reinterpret_cast<const std::byte*>(text.data());
    bytes.insert(bytes.end(), first, first + text.size());
}

// To a host a code of four characters is a number, so the file holds it from the last character to the first.
void AppendCode(Bytes& bytes, std::string_view code) {
    for (auto character = code.rbegin(); character != code.rend(); ++character)
        bytes.push_back(static_cast<std::byte>(*character));
}

void Pad(Bytes& bytes, std::size_t headBytes = 0) {
    while ((bytes.size() - headBytes) % 4 != 0) bytes.push_back(std::byte{});
}

Bytes Code(std::string_view text) {
    Bytes bytes;
    AppendCode(bytes, text);
    return bytes;
}

template <class... Values>
Bytes Numbers(Values... values) {
    Bytes bytes;
    (AppendLittle(bytes, values), ...);
    return bytes;
}

// The length of a property counts the padding of texts, but not that of numbers.
Bytes ZeroTerminated(std::string_view text) {
    Bytes bytes;
    AppendText(bytes, text);
    bytes.push_back(std::byte{});
    Pad(bytes);
    return bytes;
}

Bytes PascalString(const char* key, std::string_view text) {
    if (text.empty()) throw FileError(key, "empty", "hosts need 1 to 31 bytes of text");
    if (text.size() > kLongestIdentityText)
        throw FileError(key, "'" + std::string(text) + "' has " + std::to_string(text.size()) + " bytes",
                        "hosts take at most 31");
    if (std::ranges::any_of(text, [](char c) { return (c >= 0 && c < ' ') || c == '\x7F'; }))
        throw FileError(key, "holds a line break or another control character", "take it out");
    Bytes bytes = {static_cast<std::byte>(text.size())};
    AppendText(bytes, text);
    Pad(bytes);
    return bytes;
}

}  // namespace

std::vector<std::byte> MakePiPL(const EffectIdentity& identity) {
    using Word = std::uint32_t;
    using Half = std::uint16_t;
    const Property properties[] = {
        {"kind", Code("eFKT")},
        {"name", PascalString("FXNAME", identity.name)},
        {"catg", PascalString("CATEGORY", identity.category)},
        {"8664", ZeroTerminated("EntryPointFunc")},
        {"ePVR", Numbers(Half{2}, Half{0})},   // the version of this layout
        {"eSVR", Numbers(Half{13}, Half{2})},  // of the effect interface, major and minor
        {"eVER", Numbers(Word{identity.version})},
        {"eINF", Numbers(Half{0})},
        {"eGLO", Numbers(Word{identity.outFlags})},
        {"eGL2", Numbers(Word{identity.outFlags2})},
        {"eMNA", PascalString("MATCH_NAME", identity.matchName)},
        {"aeFL", Numbers(Word{8})},
    };
    Bytes bytes = Numbers(Half{1}, Word{0}, static_cast<Word>(std::size(properties)));
    const std::size_t headBytes = bytes.size();
    for (const Property& property : properties) {
        AppendCode(bytes, "8BIM");
        AppendCode(bytes, property.key);
        AppendLittle(bytes, Word{0});
        AppendLittle(bytes, static_cast<Word>(property.value.size()));
        bytes.insert(bytes.end(), property.value.begin(), property.value.end());
        Pad(bytes, headBytes);
    }
    return bytes;
}

}  // namespace quillon
