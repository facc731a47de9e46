#include "cli/diagnostics/ToolError.h"

#include <algorithm>

namespace quillon::cli {

namespace {

ToolError Error(int status, const std::string& place, const std::string& fault, const std::string& remedy) {
    return {status, {{.path = place, .text = fault, .remedy = remedy, .kind = Diagnostic::Kind::tool}}};
}

}  // namespace

ToolError Fault(const std::string& place, const std::string& fault, const std::string& remedy) {
    return Error(kFault, place, fault, remedy);
}

ToolError WrongCommandLine(const std::string& place, const std::string& fault, const std::string& remedy) {
    return Error(kWrongCommandLine, place, fault, remedy);
}

ToolError EffectFault(const Diagnostics& faults) {
    Diagnostics different;
    for (const Diagnostic& fault : faults) {
        if (std::ranges::find(different, fault) == different.end()) different.push_back(fault);
    }
    return {kFault, different};
}

void ThrowIfAny(const Diagnostics& faults) {
    if (!faults.empty()) throw EffectFault(faults);
}

}  // namespace quillon::cli
