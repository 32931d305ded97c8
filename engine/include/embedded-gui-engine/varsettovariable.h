#pragma once

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/boolvariable.h"
#include "embedded-gui-engine/enumvariable.h"
#include "embedded-gui-engine/scalarvariable.h"
#include "embedded-gui-engine/stringvariable.h"

namespace Engine {

/// Copies one variable's value into another of the same kind. The answer is the write's.
template <typename Variable>
class VarSetToVariable : public Action {
  public:
    /// A null on either side makes every run a logged refusal.
    constexpr VarSetToVariable(Variable* destination, const Variable* source, const char* name = nullptr,
                               std::uint32_t flags = Enabled)
        : Action(name, flags), destination_(destination), source_(source) {}

    bool execute() override;
    const char* name() const override { return nameOr("VarSetToVariable"); }

  private:
    Variable* destination_;
    const Variable* source_;
};

extern template class VarSetToVariable<BoolVariable>;
extern template class VarSetToVariable<EnumVariable>;
extern template class VarSetToVariable<ScalarVariable<int>>;
extern template class VarSetToVariable<ScalarVariable<float>>;
extern template class VarSetToVariable<StringVariable>;

}  // namespace Engine
