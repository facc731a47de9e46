#include <codecvt>
#include <locale>

// Narrow names of files are UTF-8 in the tests, as they are in the tool.
[[maybe_unused]] static const bool areUtf8 =
    (std::locale::global(std::locale(std::locale::classic(), new std::codecvt_utf8_utf16<wchar_t>)), true);
