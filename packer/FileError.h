#pragma once

#include <stdexcept>
#include <string>

namespace quillon {

// Why a file, a folder or a package cannot be used. what() is "PLACE: FAULT; REMEDY", without the parts that are empty.
// Code that sees only the bytes of a file leaves the place empty, and its caller adds it with at().
struct FileError : std::runtime_error {
    FileError(std::string where, std::string why, std::string help = "");

    // The same error at this place.
    FileError at(const std::string& where) const { return {where, fault, remedy}; }

    // "FAULT; REMEDY"
    std::string text() const { return remedy.empty() ? fault : fault + "; " + remedy; }

    std::string place;   // a path as its user named it, or a key of config.xml
    std::string fault;   // what is wrong
    std::string remedy;  // what the user can do; empty when only the caller knows
};

}  // namespace quillon
