#include "platform/WideText.h"

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
    for (const wchar_t character : text)
        bytes.push_back((character & ~0xFF) == 0 ? static_cast<char>(static_cast<unsigned char>(character)) : '?');
    return bytes;
}

}  // namespace quillon
