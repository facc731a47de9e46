#include "cli/effect/EffectDescription.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "cli/diagnostics/Rules.h"
#include "cli/effect/ConfigChecks.h"
#include "cli/effect/SampleNames.h"
#include "package/ConfigDocument.h"
#include "package/EffectFlags.h"
#include "package/EffectVersion.h"
#include "packer/FileError.h"
#include "packer/PiPL.h"

namespace quillon::cli {

std::string ConfigText(const ConfigDocument& config, const wchar_t* key) {
    constexpr const char* kBlanks = " \t\r\n";
    const std::string value = config.GetValue(key);
    const std::size_t first = value.find_first_not_of(kBlanks);
    return first == std::string::npos ? "" : value.substr(first, value.find_last_not_of(kBlanks) + 1 - first);
}

namespace {

constexpr std::string_view kMatchNamePrefix = "QLV";

// Made of the name. Throws FileError when that gives none that hosts take.
std::string DefaultMatchName(const std::string& name) {
    std::string matchName(kMatchNamePrefix);
    std::ranges::copy_if(name, std::back_inserter(matchName), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    });
    // Only the prefix would be the same for two effects.
    if (matchName == kMatchNamePrefix)
        throw FileError("FXNAME", "has no letter or digit to make a match name of", "give a MATCH_NAME");
    if (matchName.size() > kLongestIdentityText)
        throw FileError("FXNAME", "too long to make a match name of, which has at most 28 letters and digits of it",
                        "give a MATCH_NAME");
    return matchName;
}

ToolError ConfigFault(const EffectSource& source, const FileError& error) {
    const PlaceOfKey place = FindKey(source, error.place);
    return EffectFault({Found("config/identity", source.pathOf("config.xml"), place.line, place.column,
                              error.place + ": " + error.fault, error.remedy)});
}

}  // namespace

EffectIdentity IdentityOf(const EffectSource& source) {
    const ConfigDocument config(source.textOf("config.xml"));
    EffectIdentity identity{.name = ConfigText(config, L"FXNAME"),
                            .category = ConfigText(config, L"CATEGORY"),
                            .matchName = ConfigText(config, L"MATCH_NAME"),
                            .version = EffectVersion::FromConfig(config).hostWord(),
                            .outFlags = static_cast<std::uint32_t>(config.GetInteger(L"FLAGS")) | kFixedOutFlags,
                            .outFlags2 = static_cast<std::uint32_t>(config.GetInteger(L"FLAGS2"))};
    if (identity.category.empty()) identity.category = "Quillon";
    try {
        // Without a name it is the name that is refused.
        if (identity.matchName.empty() && !identity.name.empty()) identity.matchName = DefaultMatchName(identity.name);
    } catch (const FileError& error) {
        throw ConfigFault(source, error);
    }
    return identity;
}

Diagnostics CheckSampleName(const EffectSource& source) {
    const std::string matchName = IdentityOf(source).matchName;
    // "glow", "./glow/" and "glow.so" are the sample itself.
    const std::string ownName = (source.path / "").parent_path().stem().string();
    for (const SampleName* sample = kSampleNames; sample->folder; ++sample) {
        if (ownName == sample->folder || matchName != DefaultMatchName(sample->name)) continue;
        const PlaceOfKey place = FindKey(source, "FXNAME");
        return {Found("config/sample-name", source.pathOf("config.xml"), place.line, place.column,
                      "hosts take this for the sample effect \"" + std::string(sample->name) + "\"")};
    }
    return {};
}

std::vector<std::byte> DescribeEffect(const EffectSource& source) {
    try {
        return MakePiPL(IdentityOf(source));
    } catch (const FileError& error) {
        throw ConfigFault(source, error);
    }
}

}  // namespace quillon::cli
