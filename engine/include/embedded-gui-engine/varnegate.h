#pragma once

#include "embedded-gui-engine/action.h"

namespace Engine {

class BoolVariable;

class VarNegate : public Action {
  public:
    /// A null variable makes every run a logged refusal.
    constexpr explicit VarNegate(BoolVariable* variable, const char* name = nullptr, std::uint32_t flags = Enabled)
        : Action(name, flags), variable_(variable) {}

    bool execute() override;
    const char* name() const override { return nameOr("VarNegate"); }

  private:
    BoolVariable* variable_;
};

}  // namespace Engine
