#include <algorithm>
#include <array>

#include "cli/import/GlslWalk.h"

namespace quillon::cli {

namespace {

using Base = GlslType::Base;

// From the loosest to the tightest. What has a helper is no operator of the old dialect.
struct Operator {
    const char* mark;
    int level;
    const char* helper = nullptr;
    bool givesTruth = false;
};
constexpr Operator kOperators[] = {{"||", 0, nullptr, true},
                                   {"^^", 1, nullptr, true},
                                   {"&&", 2, nullptr, true},
                                   {"|", 3, "bitOr"},
                                   {"^", 4, "bitXor"},
                                   {"&", 5, "bitAnd"},
                                   {"==", 6, nullptr, true},
                                   {"!=", 6, nullptr, true},
                                   {"<", 7, nullptr, true},
                                   {">", 7, nullptr, true},
                                   {"<=", 7, nullptr, true},
                                   {">=", 7, nullptr, true},
                                   {"<<", 8, "shiftLeft"},
                                   {">>", 8, "shiftRight"},
                                   {"+", 9},
                                   {"-", 9},
                                   {"*", 10},
                                   {"/", 10},
                                   {"%", 10, "remainder"}};
constexpr int kTightest = 10;
constexpr int kFirstComparison = 6;

const Operator* FindOperator(const std::string& mark) {
    for (const Operator& row : kOperators) {
        if (mark == row.mark) return &row;
    }
    return nullptr;
}

constexpr std::array<std::string_view, 11> kAssignments = {
    "=", "+=", "-=", "*=", "/=", "%=", "&=", "|=", "^=", "<<=", ">>="};

bool IsSwizzle(const std::string& field) {
    constexpr std::string_view kSets[] = {"xyzw", "rgba", "stpq"};
    return field.size() <= 4 && std::ranges::any_of(kSets, [&](std::string_view set) {
               return field.find_first_not_of(set) == std::string::npos;
           });
}

bool IsDecimal(const std::string& number) {
    return std::ranges::all_of(number, [](char c) { return c >= '0' && c <= '9'; });
}

bool IsWholeNumber(const std::string& number) {
    return number.starts_with("0x") || number.starts_with("0X") || IsDecimal(number);
}

}  // namespace

GlslWalk::Node GlslWalk::expression() {
    Node node = assignment();
    while (take(",")) {
        const Node next = assignment();
        node = {.type = next.type, .first = node.first, .last = next.last};
    }
    return node;
}

GlslWalk::Node GlslWalk::assignment() {
    const Level level(depth);
    Node left = conditional();
    if (std::ranges::find(kAssignments, peek()) == kAssignments.end()) return left;
    const std::size_t place = at;
    const std::string mark = peek();
    ++at;
    Node right = assignment();
    const Operator* inner = FindOperator(mark.substr(0, mark.size() - 1));
    if (inner && inner->helper) {
        token(place).text = "= " + std::string(inner->helper) + "(" + textOf(left) + ",";
        wrap(right, "", ")");
        want(inner->helper, left, right);
    } else if (left.type.isArray && left.type.length > 0 && mark == "=") {
        pairElements(left, "=", right, ", ");
    } else {
        convert(right, left.type);
    }
    return {.type = left.type, .first = left.first, .last = right.last};
}

GlslWalk::Node GlslWalk::conditional() {
    Node condition = binary(0);
    if (!take("?")) return condition;
    Node yes = assignment();
    expect(":");
    Node no = assignment();
    convert(yes, no.type);
    convert(no, yes.type);
    return {.type = yes.type.isKnown() ? yes.type : no.type,
            .first = condition.first,
            .last = no.last,
            .isConstant = condition.isConstant && yes.isConstant && no.isConstant};
}

GlslWalk::Node GlslWalk::binary(int level) {
    if (level > kTightest) return unary();
    Node left = binary(level + 1);
    while (const Operator* row = FindOperator(peek())) {
        if (row->level != level) break;
        const std::size_t place = at;
        ++at;
        const Node right = binary(level + 1);
        left = combine(left, place, right, level);
    }
    return left;
}

GlslWalk::Node GlslWalk::combine(Node left, std::size_t place, Node right, int level) {
    const Operator& row = *FindOperator(token(place).source);
    Node node{.first = left.first, .last = right.last, .isConstant = left.isConstant && right.isConstant};
    if (row.helper) {
        callInstead(row.helper, left, place, right);
        node.type = left.type.isKnown() ? left.type : GlslType{Base::integer};
        node.isConstant = false;
        return node;
    }
    if (const std::string mark = row.mark; left.type.isArray && left.type.length > 0 && (mark == "==" || mark == "!="))
        pairElements(left, mark, right, mark == "==" ? " && " : " || ");
    if (level >= kFirstComparison) {
        convert(left, right.type);
        convert(right, left.type);
    }
    if (row.givesTruth) {
        node.type = {Base::boolean};
    } else if (left.type.isKnown() && right.type.isKnown()) {
        const bool isProduct =
            left.type.isMatrix != right.type.isMatrix && !left.type.isScalar() && !right.type.isScalar();
        const bool isLeftWider = left.type.size > right.type.size || (left.type.isMatrix && !isProduct);
        node.type = isProduct ? FloatOfSize(left.type.size) : isLeftWider ? left.type : right.type;
    }
    return node;
}

GlslWalk::Node GlslWalk::unary() {
    const Level level(depth);
    const std::size_t place = at;
    Node node;
    const std::string mark = peek();
    if (mark == "-" || mark == "+" || mark == "!" || mark == "~" || mark == "++" || mark == "--") {
        ++at;
        node = unary();
        if (mark == "~") {
            token(place).text = "(-1 - ";
            wrap(node, "", ")");
            node.isNumber = false;
        }
        if (mark == "!") node.type = {Base::boolean};
        node.first = place;
    } else {
        node = postfix();
    }
    return node;
}

GlslWalk::Node GlslWalk::postfix() {
    Node node = primary();
    while (true) {
        if (take("[")) {
            expression();
            expect("]");
            if (node.type.isArray) {
                node.type.isArray = false;
                node.type.length = 0;
            } else if (node.type.isMatrix) {
                node.type.isMatrix = false;
            } else {
                node.type.size = 1;
            }
            node.last = at - 1;
            node.isNumber = node.isName = false;
        } else if (peek() == ".") {
            node = field(node);
        } else if (take("++") || take("--")) {
            node.last = at - 1;
            node.isConstant = false;
        } else {
            return node;
        }
    }
}

GlslWalk::Node GlslWalk::field(Node node) {
    const std::size_t point = at;
    ++at;
    if (!isWord()) throw Stop();
    const std::string name = peek();
    ++at;
    if (name == "length" && take("(")) {
        expect(")");
        node.last = at - 1;
        if (node.type.isArray && node.type.length > 0) {
            const std::string length = std::to_string(node.type.length);
            clear(node.first, node.last);
            token(node.first).text = length;
        }
        node.type = {Base::integer};
        node.isNumber = false;
        return node;
    }
    if (node.type.base == Base::structure) {
        GlslType type;
        for (const auto& [member, memberType] : structures[node.type.name]) {
            if (member == name) type = memberType;
        }
        node.type = type;
    } else if (node.type.isScalar() && node.type.base != Base::unknown && IsSwizzle(name)) {
        convert(node, FloatOfSize(1));
        clear(point, at - 1);
        if (name.size() > 1) wrap(node, FloatOfSize(static_cast<int>(name.size())).spelled() + "(", ")");
        node.type.size = static_cast<int>(name.size());
    } else if (IsSwizzle(name)) {
        node.type.size = static_cast<int>(name.size());
    } else {
        node.type = {};
    }
    node.last = at - 1;
    node.isNumber = node.isName = false;
    return node;
}

GlslWalk::Node GlslWalk::primary() {
    const std::size_t place = at;
    if (take("(")) {
        Node node = expression();
        expect(")");
        node.first = place;
        node.last = at - 1;
        node.isName = false;
        return node;
    }
    if (at >= places.size()) throw Stop();
    if (token(at).kind == GlslToken::Kind::number) {
        const std::string& source = peek();
        const bool isWhole = IsWholeNumber(source);
        ++at;
        return {.type = {isWhole ? Base::integer : Base::floating},
                .first = place,
                .last = place,
                .isNumber = IsDecimal(source),
                .number = place,
                .isConstant = true};
    }
    if (!isWord()) throw Stop();
    const std::string name = peek();
    ++at;
    if (name == "true" || name == "false")
        return {.type = {Base::boolean}, .first = place, .last = place, .isConstant = true};
    if (peek() == "(") return call(place);
    if (peek() == "[" && TypeNamed(name)) {
        findings.refuse(lineHere(),
                        "an array that is made inside of an expression; declare it with a name and an initializer");
        throw Stop();
    }
    Node node{.first = place, .last = place, .isName = true};
    if (Macro* const macro = findMacro(name, false)) {
        std::vector<Node> none;
        const Node replacement = macroNode(*macro, none);
        node.type = replacement.type;
        node.isConstant = replacement.isConstant;
    } else if (const Symbol* symbol = find(name)) {
        node.type = symbol->type;
        node.isConstant = symbol->isConstant;
    } else if (name == "gl_FragCoord" || name == "gl_FragColor") {
        node.type = FloatOfSize(4);
    }
    return node;
}

std::vector<GlslWalk::Node> GlslWalk::arguments() {
    std::vector<Node> nodes;
    expect("(");
    if (take(")")) return nodes;
    if (peek() == "void" && peek(1) == ")") {
        at += 2;
        return nodes;
    }
    do nodes.push_back(assignment());
    while (take(","));
    expect(")");
    return nodes;
}

GlslWalk::Node GlslWalk::call(std::size_t namePlace) {
    const std::string name = token(namePlace).source;
    std::vector<Node> values = arguments();
    Node node{.first = namePlace, .last = at - 1};
    if (Macro* const macro = findMacro(name, true)) {
        node.type = macroNode(*macro, values).type;
        return node;
    }
    const bool isConstant = std::ranges::all_of(values, &Node::isConstant);
    if (const auto type = TypeNamed(name)) {
        node.type = *type;
        node.isConstant = isConstant;
        if (type->isMatrix && values.size() == 1 && values[0].type.isMatrix && values[0].type.size != type->size) {
            const std::string helper = "toMat" + std::to_string(type->size);
            token(namePlace).text = helper;
            wanted.insert(helper);
            node.isConstant = false;
        }
        return node;
    }
    if (const auto structure = structures.find(name); structure != structures.end()) {
        node.type = {Base::structure, 1, false, name};
        node.isConstant = isConstant;
        for (std::size_t i = 0; i < std::min(values.size(), structure->second.size()); ++i)
            convert(values[i], structure->second[i].second);
        return node;
    }
    if (functions.contains(name)) {
        if (const Signature* signature = signatureFor(name, values)) {
            for (std::size_t i = 0; i < values.size(); ++i) convert(values[i], signature->parameters[i]);
            node.type = signature->result;
        }
        return node;
    }
    std::vector<GlslType> types;
    for (const Node& value : values) types.push_back(value.type);
    if (name == "mix" && types.size() == 3 && types[2].base == Base::boolean) {
        token(namePlace).text = "mixWhere";
        wanted.insert("mixWhere");
    }
    if ((name == "texture" || name == "textureLod") && types.size() > 1 && types[1] == FloatOfSize(3))
        findings.refuse(token(namePlace).line,
                        name +
                            " at three numbers: there are no cube maps and no volumes; read a flat picture, at "
                            "longitude and latitude for example");
    const BuiltInCall builtIn = CallBuiltIn(name, types);
    if (builtIn.needsFloats) {
        for (Node& value : values) convert(value, FloatOfSize(1));
    }
    node.type = builtIn.type;
    return node;
}

const GlslWalk::Signature* GlslWalk::signatureFor(const std::string& name, const std::vector<Node>& values) const {
    const Signature* best = nullptr;
    int bestScore = -1;
    bool isTied = false;
    for (const Signature& signature : functions.at(name)) {
        if (signature.parameters.size() != values.size()) continue;
        int score = 0;
        for (std::size_t i = 0; i < values.size() && score >= 0; ++i) {
            const GlslType& given = values[i].type;
            const GlslType& needed = signature.parameters[i];
            const bool canBecome = needed.isFloat() && given.isInt() && needed.size == given.size;
            if (given == needed)
                score += 2;
            else if (given.isKnown() && !given.isArray && !canBecome)
                score = -1;
        }
        isTied = score == bestScore && score >= 0;
        if (score > bestScore) {
            bestScore = score;
            best = &signature;
        }
    }
    return isTied ? nullptr : best;
}

}  // namespace quillon::cli
