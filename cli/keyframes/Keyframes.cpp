#include "cli/keyframes/Keyframes.h"

#include <fmt/format.h>

#include <optional>
#include <string>

#include "cli/diagnostics/TextScanner.h"
#include "cli/diagnostics/ToolError.h"
#include "cli/system/FileEnding.h"
#include "packer/FileError.h"
#include "packer/WholeFile.h"

namespace quillon::cli {

namespace {

constexpr std::pair<std::string_view, Interpolation> kInterpolations[] = {
    {"~linear", Interpolation::linear}, {"~hold", Interpolation::hold}, {"~smooth", Interpolation::smooth}};

constexpr std::uint64_t kMostTableBytes = std::uint64_t{64} << 20;

Interpolation TakeInterpolation(std::string_view& text) {
    for (const auto& [ending, interpolation] : kInterpolations) {
        if (!text.ends_with(ending)) continue;
        text.remove_suffix(ending.size());
        return interpolation;
    }
    return Interpolation::linear;
}

// Where "@FRAME=" is: names may hold either sign, and so may values.
struct KeyParts {
    std::string_view name;
    std::int32_t frame;
    std::string_view value;
};

std::optional<KeyParts> SplitKey(std::string_view text) {
    for (std::size_t at = text.find('@'); at != std::string_view::npos; at = text.find('@', at + 1)) {
        std::string_view rest = text.substr(at + 1);
        const auto frame = TakeNumber(rest);
        if (frame && at != 0 && TakeText(rest, "=")) return KeyParts{text.substr(0, at), *frame, rest};
    }
    return {};
}

}  // namespace

void Keyframes::addOption(std::string_view text) {
    const auto key = SplitKey(text);
    if (!key) {
        throw WrongCommandLine(fmt::format("--key {}", text),
                               "write it as NAME@FRAME=VALUE, with ~hold, ~linear or ~smooth after it if you want");
    }
    add(FindControl(controls, key->name), key->frame, key->value);
}

void Keyframes::addFile(const std::filesystem::path& path) {
    const std::string ending = LowerEnding(path);
    if (ending != ".csv" && ending != ".json")
        throw WrongCommandLine("--keys " + path.string(), "tables of keys are .csv or .json");
    try {
        const std::vector<std::byte> bytes = ReadWholeFile(path, kMostTableBytes);
        std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        TakeText(text, "\xEF\xBB\xBF");  // what spreadsheets write in front of UTF-8
        ending == ".csv" ? addCsv(text) : addJson(text);
    } catch (const FileError& error) {
        throw Fault(error.place, error.fault, error.remedy);
    } catch (ToolError& error) {
        Diagnostic& fault = error.faults.front();
        throw Fault(path.string(), fault.path.empty() ? fault.text : fault.path + ": " + fault.text, fault.remedy);
    }
}

void Keyframes::add(const Control& control, std::int32_t frame, std::string_view valueText) {
    const Interpolation interpolation = TakeInterpolation(valueText);
    const ControlValue value = ParseControlValue(control.declared, valueText);
    if (!trackOf[&control].add(frame, value, interpolation))
        throw WrongCommandLine(control.declared.uniformName, fmt::format("has two keys at frame {}", frame),
                               "keep one");
}

}  // namespace quillon::cli
