#pragma once

#include <map>
#include <string>

#include "tools/modelc/lowered.h"
#include "tools/modelc/value.h"

namespace Modelc {

/// Lowers resolved values to providers and conditions. Values without state are shared within a unit, rules within
/// the model.
class ValueLowering {
  public:
    /// `rules` takes what rules become; `unit` everything else. They may be the same.
    ValueLowering(LoweredUnit& unit, LoweredUnit& rules, std::map<std::string, std::string>& ruleAddresses)
        : unit_(unit), rules_(rules), ruleAddresses_(ruleAddresses) {}

    /// The address of an Engine::ValueProvider<T> for the value's type.
    std::string provider(const Value& value);
    /// The address of an Engine::Condition.
    std::string condition(const Value& value);

  private:
    struct Branch {
        std::string condition;
        std::string value;
    };

    std::string negatedCondition(const Value& value);
    std::string result(Type type, const std::string& code);
    std::string choice(Type type, const std::vector<Branch>& branches);
    std::string compare(const CompareValue& node, Operator op);
    std::string compareFlag(const std::string& provider, bool wanted);
    std::string junction(const JunctionValue& node);
    std::string rule(const RuleValue& node, Type type);
    std::string otherwise();

    LoweredUnit& unit_;
    LoweredUnit& rules_;
    std::map<std::string, std::string>& ruleAddresses_;
};

/// "ColorChoices" and the like: the arrays of one class for one type.
std::string arrayName(Type type, std::string_view plural);

/// The engine's view of a table: one in a unit, whoever shows it.
std::string tableSourceOf(LoweredUnit& unit, const VariableInfo& table);

}  // namespace Modelc
