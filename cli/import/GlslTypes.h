#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon::cli {

// The type of an expression, as far as it is known.
struct GlslType {
    enum class Base { unknown, none, floating, integer, boolean, structure, sampler };

    Base base = Base::unknown;
    int size = 1;  // of a vector; of a matrix its rows and columns
    bool isMatrix = false;
    std::string name{};  // of a structure or sampler
    bool isArray = false;
    int length = 0;  // of an array; 0 where it is not known

    bool operator==(const GlslType&) const = default;
    bool isKnown() const { return base != Base::unknown; }
    bool isInt() const { return base == Base::integer && !isArray; }
    bool isFloat() const { return base == Base::floating && !isArray; }
    bool isScalar() const { return size == 1 && !isMatrix && !isArray; }

    // "float", "ivec3", "mat2", "sampler2D", ...
    std::string spelled() const;
};

// Nothing for a name that is no type of GLSL 1.10.
std::optional<GlslType> TypeNamed(const std::string& name);

GlslType FloatOfSize(int size);

// The type of a call of a function that the language has, from its arguments' types: the widest of them where the
// function works by component. Unknown for a name that is no such function. `needsFloats`: whole numbers that it is
// given must become floats.
struct BuiltInCall {
    GlslType type{};
    bool needsFloats = false;
    bool isKnown = false;
};
BuiltInCall CallBuiltIn(const std::string& name, const std::vector<GlslType>& arguments);

}  // namespace quillon::cli
