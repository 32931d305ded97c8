#pragma once

#include "embedded-gui-engine/action.h"

namespace Engine {

/// Goes back to the newest page of the history; false when there is none.
class HistoryGoBack : public Action {
  public:
    constexpr explicit HistoryGoBack(const char* name = nullptr, std::uint32_t flags = Enabled) : Action(name, flags) {}

    bool execute() override;
    const char* name() const override { return nameOr("HistoryGoBack"); }
};

}  // namespace Engine
