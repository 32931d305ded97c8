#pragma once

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/scalarvariable.h"
#include "embedded-gui-engine/varsettovalue.h"

namespace Engine {

/// Adds a step to a variable, within its limits; with the flag Wrap from one end to the other.
template <typename Scalar>
class VarIncrement : public Action {
  public:
    using Value = ValueOf<Scalar>;

    /// A null variable makes every run a logged refusal.
    constexpr explicit VarIncrement(Scalar* variable, Value step = 1, const char* name = nullptr,
                                    std::uint32_t flags = Enabled)
        : Action(name, flags), variable_(variable), step_(step) {}

    bool execute() override;
    const char* name() const override { return nameOr("VarIncrement"); }

  private:
    Scalar* variable_;
    Value step_;
};

/// Takes a step away: an increment of the negated step.
template <typename Scalar>
class VarDecrement : public VarIncrement<Scalar> {
  public:
    constexpr explicit VarDecrement(Scalar* variable, ValueOf<Scalar> step = 1, const char* name = nullptr,
                                    std::uint32_t flags = Action::Enabled)
        : VarIncrement<Scalar>(variable, -step, name, flags) {}
};

extern template class VarIncrement<ScalarVariable<int>>;
extern template class VarIncrement<ScalarVariable<float>>;
extern template class VarDecrement<ScalarVariable<int>>;
extern template class VarDecrement<ScalarVariable<float>>;

}  // namespace Engine
