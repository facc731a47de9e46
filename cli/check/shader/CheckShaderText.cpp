#include "cli/check/shader/CheckShaderText.h"

#include <algorithm>
#include <tuple>

#include "cli/check/shader/ShaderChecks.h"

namespace quillon::cli {

Diagnostics CheckShaderText(const std::string& path, std::string_view text) {
    return CheckShaderText(path, ShaderSource(text));
}

Diagnostics CheckShaderText(const std::string& path, const ShaderSource& source) {
    ShaderFindings findings(path, source);
    for (auto* check :
         {CheckForm, CheckDirectives, CheckFunctions, CheckReads, CheckVariables, CheckLoops, CheckDialect})
        check(source, findings);
    const auto placeOf = [](const Diagnostic& finding) { return std::tuple(finding.line, finding.column); };
    std::ranges::stable_sort(findings.found, {}, placeOf);
    return std::move(findings.found);
}

}  // namespace quillon::cli
