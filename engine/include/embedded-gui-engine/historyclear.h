#pragma once

#include "embedded-gui-engine/action.h"

namespace Engine {

class HistoryClear : public Action {
  public:
    constexpr explicit HistoryClear(const char* name = nullptr, std::uint32_t flags = Enabled) : Action(name, flags) {}

    bool execute() override;
    const char* name() const override { return nameOr("HistoryClear"); }
};

}  // namespace Engine
