#pragma once

#include <utility>

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/boolvariable.h"
#include "embedded-gui-engine/changed.h"
#include "embedded-gui-engine/enumvariable.h"
#include "embedded-gui-engine/scalarvariable.h"
#include "embedded-gui-engine/stringvariable.h"

namespace Engine {

/// The type of a variable's value.
template <typename Variable>
using ValueOf = decltype(std::declval<const Variable&>().value());

/// Writes a constant, which modifiers may replace, into a variable. The answer is the write's.
template <typename Variable>
class VarSetToValue : public Action {
  public:
    using Value = ValueOf<Variable>;

    /// A null variable makes every run a logged refusal. A string is not copied.
    constexpr VarSetToValue(Value value, Variable* variable, const char* name = nullptr, std::uint32_t flags = Enabled)
        : Action(name, flags), value_(value), variable_(variable) {}

    bool execute() override;
    const char* name() const override { return nameOr("VarSetToValue"); }

    /// The value to be written by later runs.
    void setValue(Value value) { changed(value_, value); }

  private:
    Value value_;
    Variable* variable_;
};

extern template class VarSetToValue<BoolVariable>;
extern template class VarSetToValue<EnumVariable>;
extern template class VarSetToValue<ScalarVariable<int>>;
extern template class VarSetToValue<ScalarVariable<float>>;
extern template class VarSetToValue<StringVariable>;

}  // namespace Engine
