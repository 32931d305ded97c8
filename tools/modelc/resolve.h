#pragma once

#include <map>
#include <optional>
#include <string>

#include "tools/modelc/ast.h"
#include "tools/modelc/diagnostics.h"
#include "tools/modelc/model.h"
#include "tools/modelc/names.h"
#include "tools/modelc/value.h"

namespace Modelc {

/// Gives every name of an expression its meaning and checks that kinds fit. What does not fit is reported once and
/// answered with null.
class Resolver {
  public:
    Resolver(const ModelTree& model, const Names& names, Diagnostics& diagnostics)
        : model_(model), names_(names), diagnostics_(diagnostics) {}

    ValuePtr value(const ExprPtr& expr, Type type);
    ValuePtr condition(const ExprPtr& expr) { return value(expr, Type::Bool); }
    /// What a label may show: a text of the tables, a literal, a variable, a format, a filled text.
    ValuePtr content(const ExprPtr& expr);

    /// The variable or table cell that is named; null after a report.
    const VariableInfo* variable(const ExprPtr& expr);
    std::optional<unsigned> event(const ExprPtr& expr);
    /// A constant of the kind of `variable`, as a C++ constant.
    std::optional<ConstantValue> constantFor(const VariableInfo& variable, const ExprPtr& expr);
    /// A constant of the type, as a C++ constant.
    std::optional<ConstantValue> constant(const ExprPtr& expr, Type type);

  private:
    ValuePtr choice(const ChooseExpr& choose, Span span, Type type);
    ValuePtr nightDay(const NightDayExpr& pair, Span span, Type type);
    ValuePtr placeOnScale(const PlaceExpr& place, Span span, Type type);
    ValuePtr named(const Expr& expr, const NameExpr& name, Type type);
    ValuePtr rule(const std::string& name, Span span, Type type);
    ValuePtr variableValue(const VariableInfo& variable, Span span, Type type);
    ValuePtr binary(const Expr& expr, const BinaryExpr& node);
    ValuePtr comparison(const Expr& expr, const BinaryExpr& node);
    ValuePtr formatted(const Expr& expr, const FormatExpr& node);
    ValuePtr filled(const Expr& expr, const CallExpr& node);
    ValuePtr part(const ExprPtr& expr);
    std::optional<ConstantValue> namedConstant(const Expr& expr, const NameExpr& name, Type type);
    const VariableInfo* cell(const Expr& expr, const IndexExpr& node);
    bool couldBeVariable(const ExprPtr& expr) const;
    void checkPlaceholders(const TextInfo& text, std::size_t parts, Span span);
    /// The text whose key a constant holds.
    const TextInfo* textOf(const ConstantValue& constant) const;
    std::nullptr_t unknown(const Expr& expr, const NameExpr& name, Type type);
    std::nullptr_t mismatch(Span span, std::string_view what, Type wanted, std::string help = {});

    const ModelTree& model_;
    const Names& names_;
    Diagnostics& diagnostics_;
    std::map<std::string, ValuePtr> rules_;
    std::vector<std::string> openRules_;
};

}  // namespace Modelc
