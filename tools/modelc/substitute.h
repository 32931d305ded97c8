#pragma once

#include <map>
#include <string>

#include "tools/modelc/ast.h"
#include "tools/modelc/diagnostics.h"

namespace Modelc {

/// What names stand for while a template or a repetition is expanded: parameters, repeated names, constants.
class Bindings {
  public:
    explicit Bindings(const Bindings* outer = nullptr) : outer_(outer) {}

    void bind(const std::string& name, ExprPtr value) { values_[name] = std::move(value); }
    /// Null when nothing is bound to `name`.
    ExprPtr find(const std::string& name) const;

  private:
    const Bindings* outer_;
    std::map<std::string, ExprPtr> values_;
};

/// Puts what is bound in the place of names, and of the braces inside names. Nodes without a bound name are shared.
class Substitution {
  public:
    Substitution(const Bindings& bindings, Diagnostics& diagnostics) : bindings_(bindings), diagnostics_(diagnostics) {}

    ExprPtr operator()(const ExprPtr& expr) const;  ///< null stays null
    std::vector<ExprPtr> operator()(const std::vector<ExprPtr>& list) const;
    ActionPtr operator()(const ActionPtr& action) const;
    std::vector<ActionPtr> operator()(const std::vector<ActionPtr>& actions) const;
    Name operator()(const Name& name) const;

  private:
    std::string pasted(const std::string& text, Span span) const;
    ExprPtr nameExpr(const Expr& expr, const NameExpr& name) const;

    const Bindings& bindings_;
    Diagnostics& diagnostics_;
};

/// The name `none`, by which a parameter says that it was left out.
bool isNone(const ExprPtr& expr);

}  // namespace Modelc
