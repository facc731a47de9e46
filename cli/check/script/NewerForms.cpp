#include "cli/check/script/NewerForms.h"

#include <iterator>

namespace quillon::cli {

namespace {

using enum NewerForm::What;

// In the order of the enumeration.
constexpr struct {
    NewerForm::What what;
    NewerFormWords words;
} kWords[] = {
    {arrow, {"scripts have no arrow functions (=>)", "write function (x) { return ...; }"}},
    {asyncFunction, {"scripts have no async functions", "write a plain function"}},
    {await, {"scripts have no await", "call the function, and use its result"}},
    {bigInteger, {"scripts have no BigInt numbers such as 1n", "leave the n out"}},
    {catchWithoutName, {"scripts have no catch without a name", "write catch (error)"}},
    {classes, {"scripts have no classes", "write a function, and its methods on the function's prototype"}},
    {computedAccessor, {"scripts have no getters and setters with computed names", "use Object.defineProperty"}},
    {constInLoop, {"scripts have no const in the head of a loop", "write var"}},
    {defaultArgument,
     {"scripts have no default arguments", "write if (x === undefined) x = ...; at the start of the function"}},
    {destructuring, {"scripts have no destructuring", "read each element or member by itself"}},
    {digitSeparator, {"scripts have no underscores in numbers", "write the digits without them"}},
    {forOf, {"scripts have no for...of", "use array.forEach(function (x) { ... }), or count an index"}},
    {generator, {"scripts have no generators (function*)", "return an array"}},
    {letDeclaration, {"scripts have no let", "write var"}},
    {logicalAssignment, {"scripts have no logical assignments such as ||=", "write a = a || b"}},
    {module, {"scripts have no modules, and no import or export", "keep all of the script in fx.js"}},
    {nullish, {"scripts have no ??", "write a === undefined ? b : a"}},
    {optionalChaining, {"scripts have no ?.", "write a && a.b"}},
    {regexpFlag, {"regular expressions have only the flags g, i and m here", "leave the flag out"}},
    {regexpGroup, {"regular expressions have no named groups and no look-behind here", "use a plain group"}},
    {restParameter, {"scripts have no rest parameters", "use arguments"}},
    {spread, {"scripts have no spread (...)", "use f.apply(null, array), or array.concat(other)"}},
    {superObject, {"scripts have no super", "call the other function by its name"}},
    {templateString, {"scripts have no template strings", "join texts with +"}},
    {trailingComma, {"scripts allow no comma after the last argument", "leave the comma out"}},
};

consteval bool IsInOrder() {
    for (std::size_t i = 0; i < std::size(kWords); ++i)
        if (static_cast<std::size_t>(kWords[i].what) != i) return false;
    return std::size(kWords) == static_cast<std::size_t>(trailingComma) + 1;
}
static_assert(IsInOrder());

}  // namespace

NewerFormWords WordsFor(NewerForm::What what) {
    return kWords[static_cast<std::size_t>(what)].words;
}

}  // namespace quillon::cli
