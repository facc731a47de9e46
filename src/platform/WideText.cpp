#include "platform/WideText.h"

#include <type_traits>

namespace quillon {

std::wstring WidenBytes(std::string_view bytes) {
    std::wstring text;
    text.reserve(bytes.size());
    for (const char byte : bytes) text.push_back(static_cast<wchar_t>(static_cast<unsigned char>(byte)));
    return text;
}

std::string NarrowToBytes(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    for (const wchar_t character : text) {
        const auto code = static_cast<std::make_unsigned_t<wchar_t>>(character);
        bytes.push_back(code <= 0xFF ? static_cast<char>(static_cast<unsigned char>(code)) : '?');
    }
    return bytes;
}

}  // namespace quillon
