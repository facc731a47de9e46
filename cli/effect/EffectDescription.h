#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/effect/EffectSource.h"

namespace quillon {
class ConfigDocument;
}

namespace quillon::cli {

// The text of a key without the blanks and line breaks around it, which are the file's layout.
std::string ConfigText(const ConfigDocument& config, const wchar_t* key);

// The description that a Windows module carries, see PiPL.h, from a config.xml that parses. Its numbers are those that
// the module itself answers to hosts. Without CATEGORY the category is "Quillon", without MATCH_NAME the match name is
// "QLV" and the ASCII letters and digits of FXNAME. Throws EffectFault for a text that hosts would not take.
std::vector<std::byte> DescribeEffect(const EffectSource& source);

}  // namespace quillon::cli
