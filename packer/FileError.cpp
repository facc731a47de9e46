#include "packer/FileError.h"

#include <utility>

namespace quillon {

namespace {

std::string Words(const std::string& place, const std::string& fault, const std::string& remedy) {
    return (place.empty() ? "" : place + ": ") + fault + (remedy.empty() ? "" : "; " + remedy);
}

}  // namespace

FileError::FileError(std::string where, std::string why, std::string help)
    : std::runtime_error(Words(where, why, help)),
      place(std::move(where)),
      fault(std::move(why)),
      remedy(std::move(help)) {}

}  // namespace quillon
