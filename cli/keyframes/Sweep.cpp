#include "cli/keyframes/Sweep.h"

#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

Sweep ParseSweep(const std::vector<Control>& controls, std::string_view text) {
    const std::size_t equals = text.find('=');
    if (equals == std::string_view::npos || equals == 0)
        throw WrongCommandLine("--sweep " + std::string(text), "write it as NAME=VALUE,VALUE,...");
    Sweep sweep{&FindControl(controls, text.substr(0, equals)), {}};
    std::string_view rest = text.substr(equals + 1);
    const char separator = rest.find(';') == std::string_view::npos ? ',' : ';';
    for (std::size_t at = 0; at != std::string_view::npos;) {
        at = rest.find(separator);
        const std::string_view value = rest.substr(0, at);
        sweep.values.emplace_back(value, ParseControlValue(sweep.control->declared, value));
        if (at != std::string_view::npos) rest.remove_prefix(at + 1);
    }
    return sweep;
}

}  // namespace quillon::cli
