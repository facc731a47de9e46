#pragma once

#include <stdexcept>

namespace quillon {

// Why something cannot become a package, in words that name place, fault and remedy.
struct PackageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace quillon
