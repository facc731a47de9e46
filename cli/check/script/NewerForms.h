#pragma once

#include <cstdint>

namespace quillon::cli {

// What editions after ECMAScript 5 brought and the script heap refuses. What it takes of them is not here: const,
// shorthand properties, methods, computed keys, "**", binary numbers.
struct NewerForm {
    enum class What : std::uint8_t {
        arrow,
        asyncFunction,
        await,
        bigInteger,
        catchWithoutName,
        classes,
        computedAccessor,
        constInLoop,
        defaultArgument,
        destructuring,
        digitSeparator,
        forOf,
        generator,
        letDeclaration,
        logicalAssignment,
        module,
        nullish,
        optionalChaining,
        regexpFlag,
        regexpGroup,
        restParameter,
        spread,
        superObject,
        templateString,
        trailingComma,
    };

    What what;
    std::uint32_t place;  // bytes from the start of the text
};

struct NewerFormWords {
    const char* text;    // what is wrong
    const char* remedy;  // what ECMAScript 5 has in its place
};

NewerFormWords WordsFor(NewerForm::What what);

}  // namespace quillon::cli
