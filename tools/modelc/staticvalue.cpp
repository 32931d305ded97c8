#include "tools/modelc/staticvalue.h"

namespace Modelc {

namespace {

std::optional<double> number(const Expr& expr, bool& whole) {
    if (const auto* literal = std::get_if<IntLiteral>(&expr.node)) return static_cast<double>(literal->value);
    if (const auto* literal = std::get_if<FloatLiteral>(&expr.node)) {
        whole = false;
        return literal->value;
    }
    return std::nullopt;
}

std::optional<double> calculate(const std::string& op, double a, double b, bool whole) {
    if (op == "+") return a + b;
    if (op == "-") return a - b;
    if (op == "*") return a * b;
    if (op == "/" && b != 0) return whole ? static_cast<double>(static_cast<std::int64_t>(a / b)) : a / b;
    return std::nullopt;
}

std::optional<bool> compare(const std::string& op, const Expr& left, const Expr& right) {
    bool whole = true;
    const auto a = number(left, whole);
    const auto b = number(right, whole);
    if (a && b) {
        if (op == "==") return *a == *b;
        if (op == "!=") return *a != *b;
        if (op == "<") return *a < *b;
        if (op == "<=") return *a <= *b;
        if (op == ">") return *a > *b;
        if (op == ">=") return *a >= *b;
        return std::nullopt;
    }
    if (op != "==" && op != "!=") return std::nullopt;
    const auto* nameA = std::get_if<NameExpr>(&left.node);
    const auto* nameB = std::get_if<NameExpr>(&right.node);
    if (nameA != nullptr && nameB != nullptr) return (nameA->parts == nameB->parts) == (op == "==");
    // Of two kinds, for instance a text given where `none` was the fallback: they differ.
    if (left.node.index() != right.node.index()) return op == "!=";
    return std::nullopt;
}

std::optional<bool> evaluate(const ExprPtr& expr) {
    if (const auto* literal = std::get_if<BoolLiteral>(&expr->node)) return literal->value;
    if (const auto* unary = std::get_if<UnaryExpr>(&expr->node)) {
        const auto inner = evaluate(unary->operand);
        return inner && unary->op == "!" ? std::optional<bool>(!*inner) : std::nullopt;
    }
    const auto* binary = std::get_if<BinaryExpr>(&expr->node);
    if (binary == nullptr) return std::nullopt;
    if (binary->op == "&&" || binary->op == "||") {
        const auto left = evaluate(binary->left);
        const auto right = evaluate(binary->right);
        if (!left || !right) return std::nullopt;
        return binary->op == "&&" ? *left && *right : *left || *right;
    }
    return compare(binary->op, *folded(binary->left), *folded(binary->right));
}

}  // namespace

ExprPtr folded(const ExprPtr& expr) {
    const auto* binary = expr != nullptr ? std::get_if<BinaryExpr>(&expr->node) : nullptr;
    if (binary == nullptr) return expr;
    const ExprPtr left = folded(binary->left);
    const ExprPtr right = folded(binary->right);
    bool whole = true;
    const auto a = number(*left, whole);
    const auto b = number(*right, whole);
    const auto result = a && b ? calculate(binary->op, *a, *b, whole) : std::nullopt;
    if (!result) return expr;
    if (whole) return std::make_shared<Expr>(Expr{expr->span, IntLiteral{static_cast<std::int64_t>(*result), false}});
    return std::make_shared<Expr>(Expr{expr->span, FloatLiteral{*result}});
}

std::optional<bool> staticCondition(const ExprPtr& expr, Diagnostics& diagnostics) {
    const auto result = evaluate(expr);
    if (!result)
        diagnostics.error(
            expr->span, "this is not known while compiling",
            "'if' chooses members from parameters and constants; for a rule that follows a variable give a property, "
            "such as  visible: CONDITION");
    return result;
}

std::optional<std::int64_t> staticNumber(const ExprPtr& expr, Diagnostics& diagnostics) {
    const ExprPtr value = folded(expr);
    if (const auto* literal = std::get_if<IntLiteral>(&value->node)) return literal->value;
    diagnostics.error(expr->span, "a whole number known while compiling is expected here");
    return std::nullopt;
}

}  // namespace Modelc
