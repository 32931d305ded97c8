#pragma once

#include <string>
#include <vector>

#include "tools/modelc/lowercontext.h"

namespace Modelc {

/// Lowers the actions of one page or container.
class ActionLowering {
  public:
    ActionLowering(LoweringContext& context, LoweredUnit& unit, const UnitNode& node)
        : context_(context), unit_(unit), node_(node), values_(unit, context.rules(), context.ruleAddresses) {}

    /// The addresses of the actions, in order; `place` says where they stand.
    std::vector<std::string> list(const std::vector<ActionPtr>& actions, const std::string& place);
    /// The same as a span of Action pointers.
    std::string table(const std::vector<ActionPtr>& actions, const std::string& place);
    /// The address of a matcher for the events, "nullptr" for none; notes who hears them.
    std::string matcher(const std::vector<ExprPtr>& events, const std::string& place, Span span);

  private:
    void add(const ActionStmt& action, const std::string& place, std::vector<std::string>& out);
    std::string namedFire(const ActionStmt& action, const std::string& tail, const std::string& place);
    std::string object(const ActionStmt& action, std::string_view type, std::string_view array,
                       std::string initialiser);
    std::string single(const ActionStmt& action, const std::string& place);
    std::string set(const ActionStmt& action, const std::string& place, const std::string& tail);
    std::string setToRule(const ActionStmt& action, const VariableInfo& variable, const std::string& tail,
                          const std::string& place);
    std::string toggle(const ActionStmt& action, const std::string& place, const std::string& tail);
    std::string back(const ActionStmt& action);
    std::string focus(const ActionStmt& action, const std::string& tail);
    std::string fire(const ActionStmt& action, const std::string& place, const std::string& tail);
    std::string step(const ActionStmt& action, const std::string& place, const std::string& tail);
    std::string navigate(const ActionStmt& action, const std::string& place, const std::string& tail);
    std::string group(const ActionStmt& action, const std::string& place);
    void edit(const ActionStmt& action, const std::string& place, std::vector<std::string>& out);
    void drive(const ActionStmt& action, const std::string& address, const std::string& place);
    bool operands(const ActionStmt& action, std::size_t least, std::size_t most, const char* usage);
    const VariableInfo* written(const ExprPtr& expr, const std::string& place);

    LoweringContext& context_;
    LoweredUnit& unit_;
    const UnitNode& node_;
    ValueLowering values_;
};

/// The engine's interface class of a variable: Engine::BoolVariable and so on.
std::string engineVariable(VariableKind kind);

}  // namespace Modelc
