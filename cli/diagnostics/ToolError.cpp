#include "cli/diagnostics/ToolError.h"

namespace quillon::cli {

ToolError Fault(const std::string& words) {
    return {kFault, "quillon: error: " + words + "\n"};
}

ToolError WrongCommandLine(const std::string& words) {
    return {kWrongCommandLine, "quillon: error: " + words + "\n"};
}

}  // namespace quillon::cli
