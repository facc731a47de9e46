#include "support/BuiltFiles.h"

namespace quillon::test {

std::filesystem::path carrierModule() {
    return QUILLON_CARRIER;
}

std::filesystem::path templateModule() {
    return QUILLON_MODULE;
}

std::filesystem::path toolProgram() {
    return QUILLON_TOOL;
}

std::filesystem::path sourceFolder() {
    return QUILLON_SOURCE;
}

}  // namespace quillon::test
