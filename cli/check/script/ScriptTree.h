#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "cli/check/script/NewerForms.h"

namespace quillon::cli {

enum class NodeKind : std::uint8_t {
    // Statements. Children in the order of the text; what is left out is `empty` where others follow it.
    program,
    block,
    variables,  // var, also let and const: a `variable` each
    variable,   // a binding or a pattern, then the first value
    function,   // its name as a binding if it has one, the parameters, the body: a block or, of an arrow, an expression
    parameter,  // a binding or a pattern, then the default
    expression,  // as a statement
    ifElse,      // test, branch, other branch
    loop,        // while, do, for: the parts of the head and the body
    forIn,       // target, object, body
    leave,       // return, throw, break, continue; with a value for the first two
    attempt,     // try: a block, then a `handler`, a block, or both
    handler,     // catch: a binding, then the block
    with,        // object, body
    select,      // switch: the value, then all that is inside
    labeled,     // the statement
    empty,
    // Expressions
    identifier,  // a use of a name, `text`
    binding,     // the place that declares a name, `text`
    self,        // this
    literal,     // a number, true, null, a regular expression, a template string with its expressions
    text,        // `text` is what is between the quotes, escapes as they are
    array,       // elements; `empty` for a hole
    object,      // a `property` each
    property,    // the key if it is computed, then the value; `text` is the key if it is a name, text or number
    group,       // parentheses around an expression
    member,      // the object; `text` is the name
    index,       // the object, the key
    call,        // the function, the arguments
    create,      // new: the same
    typeOf,
    unary,        // `text` is the operator, also ++ and --
    binary,       // `text` is the operator
    conditional,  // test, branch, other branch
    assign,       // target, value; `text` is the operator
    sequence,
    spread,
    klass,
};

using NodeIndex = std::uint32_t;

// A part of the script, from an identifier to the program.
struct ScriptNode {
    NodeKind kind;
    bool isWritten = false;  // an identifier, a member or an index that "=" or a loop's head sets, and does not read
    bool isDeclaration = false;  // a function as a statement: its name belongs to the function around it
    std::string_view text = {};
    // Bytes from the start of the text. `place` is where to point: at a name, an operator, a keyword.
    std::uint32_t begin = 0, end = 0, place = 0;
    // 0 is no node here: the program is no one's child.
    NodeIndex parent = 0, firstChild = 0, lastChild = 0, nextSibling = 0;
};

// A script as it is written. Rules walk it without recursion, however deep a script nests.
struct ScriptTree {
    std::vector<ScriptNode> nodes;      // the first is the program
    std::deque<std::string> decoded;    // names that escapes spell
    std::vector<NewerForm> newerForms;  // in the order of the text
    bool isWhole = false;               // false: the text is no script, or nests too deep, and the nodes end there
    std::uint32_t brokenAt = 0;         // of a text that is not whole: the byte where it ends to be one
    std::string_view brokenToken = {};  // what is there; empty for the end of the text

    const ScriptNode& operator[](NodeIndex node) const { return nodes[node]; }
    const ScriptNode& parentOf(NodeIndex node) const { return nodes[nodes[node].parent]; }
    NodeIndex childOf(NodeIndex node, int number) const;  // 0 when there are fewer
    // The expression inside any parentheses.
    NodeIndex inside(NodeIndex node) const;
    // What a function is called: by its declaration, or by what it is assigned to; empty for none.
    std::string_view nameOfFunction(NodeIndex function) const;
    // Each node after the one that holds it, siblings in the order of the text; 0 after the last.
    NodeIndex after(NodeIndex node) const;
};

// Reads all of ECMAScript 5 that the script heap takes, and most of the editions after it, so that each form of these
// can be named. Never fails; linear in the length of the text, which must outlive the tree.
ScriptTree ParseScript(std::string_view text);

}  // namespace quillon::cli
