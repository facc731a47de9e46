#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/effect/EffectSource.h"

namespace quillon {
class ConfigDocument;
struct EffectIdentity;
}  // namespace quillon

namespace quillon::cli {

// The text of a key without the blanks and line breaks around it, which are the file's layout.
std::string ConfigText(const ConfigDocument& config, const wchar_t* key);

// What hosts know the effect by, from a config.xml that parses. The numbers are those that the module itself answers to
// hosts. Without CATEGORY the category is "Quillon", without MATCH_NAME the match name is "QLV" and the ASCII letters
// and digits of FXNAME. Throws EffectFault when that makes no match name.
EffectIdentity IdentityOf(const EffectSource& source);

// A warning when hosts would take the effect for one of the sample effects that it was copied from.
Diagnostics CheckSampleName(const EffectSource& source);

// The same as the description that a Windows module carries, see PiPL.h. Throws EffectFault for a text that hosts would
// not take.
std::vector<std::byte> DescribeEffect(const EffectSource& source);

}  // namespace quillon::cli
