#include "support/BuiltFiles.h"

#include <string>

namespace quillon::test {

std::filesystem::path CarrierModule() {
    return QUILLON_CARRIER;
}

std::filesystem::path TemplateModule() {
    return QUILLON_MODULE;
}

std::filesystem::path PluginTemplate() {
    return QUILLON_FREI0R;
}

std::filesystem::path WindowsModule(const char* name) {
    return std::filesystem::path(QUILLON_WINDOWS) / (std::string(name) + ".dll");
}

std::filesystem::path ToolProgram() {
    return QUILLON_TOOL;
}

std::filesystem::path SourceFolder() {
    return QUILLON_SOURCE;
}

}  // namespace quillon::test
