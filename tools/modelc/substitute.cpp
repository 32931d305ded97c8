#include "tools/modelc/substitute.h"

#include <variant>

namespace Modelc {

namespace {

ExprPtr make(Span span, decltype(Expr::node) node) {
    return std::make_shared<Expr>(Expr{span, std::move(node)});
}

/// How a bound value reads inside a name; false when it cannot stand there.
bool nameText(const Expr& expr, std::string& text) {
    if (const auto* name = std::get_if<NameExpr>(&expr.node)) {
        text = name->parts.front();
        return name->parts.size() == 1;
    }
    if (const auto* number = std::get_if<IntLiteral>(&expr.node)) {
        text = std::to_string(number->value);
        return number->value >= 0;
    }
    if (const auto* string = std::get_if<StringLiteral>(&expr.node)) {
        text = string->value;
        return text.find_first_not_of("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_") ==
               std::string::npos;
    }
    return false;
}

/// A literal holds no names, and is shared.
template <typename Literal>
ExprPtr within(const ExprPtr& expr, const Literal&, const Substitution&) {
    return expr;
}

ExprPtr within(const ExprPtr& expr, const UnaryExpr& node, const Substitution& put) {
    return make(expr->span, UnaryExpr{node.op, put(node.operand)});
}

ExprPtr within(const ExprPtr& expr, const BinaryExpr& node, const Substitution& put) {
    return make(expr->span, BinaryExpr{node.op, node.opSpan, put(node.left), put(node.right)});
}

ExprPtr within(const ExprPtr& expr, const ChooseExpr& node, const Substitution& put) {
    ChooseExpr result;
    for (const auto& branch : node.branches) result.branches.push_back({put(branch.condition), put(branch.value)});
    return make(expr->span, std::move(result));
}

ExprPtr within(const ExprPtr& expr, const NightDayExpr& node, const Substitution& put) {
    return make(expr->span, NightDayExpr{put(node.night), put(node.day)});
}

ExprPtr within(const ExprPtr& expr, const CallExpr& node, const Substitution& put) {
    return make(expr->span, CallExpr{put(node.callee), put(node.arguments)});
}

ExprPtr within(const ExprPtr& expr, const IndexExpr& node, const Substitution& put) {
    const Name field = put(Name{node.field, expr->span});
    return make(expr->span, IndexExpr{put(node.table), put(node.row), field.text});
}

ExprPtr within(const ExprPtr& expr, const FormatExpr& node, const Substitution& put) {
    FormatExpr result = node;
    result.value = put(node.value);
    return make(expr->span, std::move(result));
}

ExprPtr within(const ExprPtr& expr, const PlaceExpr& node, const Substitution& put) {
    return make(expr->span, PlaceExpr{put(node.value), put(node.table)});
}

ExprPtr within(const ExprPtr& expr, const ListExpr& node, const Substitution& put) {
    return make(expr->span, ListExpr{put(node.items)});
}

}  // namespace

bool isNone(const ExprPtr& expr) {
    const auto* name = expr != nullptr ? std::get_if<NameExpr>(&expr->node) : nullptr;
    return name != nullptr && name->parts.size() == 1 && name->parts.front() == "none";
}

ExprPtr Bindings::find(const std::string& name) const {
    for (const Bindings* scope = this; scope != nullptr; scope = scope->outer_)
        if (const auto found = scope->values_.find(name); found != scope->values_.end()) return found->second;
    return nullptr;
}

std::string Substitution::pasted(const std::string& text, Span span) const {
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '{') {
            result += text[at++];
            continue;
        }
        const std::size_t end = text.find('}', at);
        const std::string inner = text.substr(at + 1, end - at - 1);
        const ExprPtr bound = bindings_.find(inner);
        std::string part;
        if (bound == nullptr)
            diagnostics_.error(span, "nothing here is called '" + inner + "'",
                               "braces in a name hold a parameter or a name that 'for' repeats");
        else if (!nameText(*bound, part))
            diagnostics_.error(span, "the value of '" + inner + "' cannot be a part of a name",
                               "a word or a number can");
        result += part;
        at = end + 1;
    }
    return result;
}

ExprPtr Substitution::nameExpr(const Expr& expr, const NameExpr& name) const {
    bool changed = false;
    std::vector<std::string> parts;
    for (const auto& part : name.parts) {
        parts.push_back(part.find('{') == std::string::npos ? part : pasted(part, expr.span));
        changed = changed || parts.back() != part;
    }
    if (const ExprPtr bound = bindings_.find(parts.front())) {
        if (parts.size() == 1) return bound;
        if (const auto* prefix = std::get_if<NameExpr>(&bound->node)) {
            NameExpr whole = *prefix;
            whole.parts.insert(whole.parts.end(), parts.begin() + 1, parts.end());
            return make(expr.span, std::move(whole));
        }
        diagnostics_.error(expr.span, "'" + parts.front() + "' is a value here and has no parts");
    }
    return changed ? make(expr.span, NameExpr{std::move(parts)}) : nullptr;
}

ExprPtr Substitution::operator()(const ExprPtr& expr) const {
    if (expr == nullptr) return nullptr;
    if (const auto* name = std::get_if<NameExpr>(&expr->node)) {
        ExprPtr replaced = nameExpr(*expr, *name);
        return replaced != nullptr ? replaced : expr;
    }
    return std::visit([&](const auto& node) { return within(expr, node, *this); }, expr->node);
}

std::vector<ExprPtr> Substitution::operator()(const std::vector<ExprPtr>& list) const {
    std::vector<ExprPtr> result;
    for (const auto& item : list) result.push_back((*this)(item));
    return result;
}

ActionPtr Substitution::operator()(const ActionPtr& action) const {
    ActionStmt result = *action;
    result.operands = (*this)(action->operands);
    result.children = (*this)(action->children);
    result.name = (*this)(Name{action->name, action->span}).text;
    result.condition = (*this)(action->condition);
    return std::make_shared<ActionStmt>(std::move(result));
}

std::vector<ActionPtr> Substitution::operator()(const std::vector<ActionPtr>& actions) const {
    std::vector<ActionPtr> result;
    for (const auto& action : actions) {
        bool leftOut = false;
        ActionPtr one = (*this)(action);
        for (const auto& operand : one->operands) leftOut = leftOut || isNone(operand);
        if (!leftOut) result.push_back(std::move(one));
    }
    return result;
}

Name Substitution::operator()(const Name& name) const {
    return name.text.find('{') == std::string::npos ? name : Name{pasted(name.text, name.span), name.span};
}

}  // namespace Modelc
