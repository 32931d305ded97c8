#pragma once

#include "embedded-gui-engine/action.h"
#include "embedded-gui-engine/changed.h"

namespace Engine {

class Page;

/// Goes to a page and remembers the present one in the history.
class NavigateTo : public Action {
  public:
    /// A null target leaves no page active.
    constexpr explicit NavigateTo(Page* target, const char* name = nullptr, std::uint32_t flags = Enabled)
        : Action(name, flags), target_(target) {}

    bool execute() override;
    const char* name() const override { return nameOr("NavigateTo"); }

    void setTarget(Page* target) { changed(target_, target); }
    Page* target() const { return target_; }

  private:
    Page* target_;
};

}  // namespace Engine
