#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/reactable.h"

namespace Engine {

class UserAction;
class UserButton;

/// Reactions that belong to no page and are listened to whenever the container is enabled.
class BehaviorContainer : public Reactable {
  public:
    constexpr explicit BehaviorContainer(const ReactableParams& params, std::span<UserAction* const> userActions = {},
                                         std::span<UserButton* const> userButtons = {}, const char* name = nullptr,
                                         bool enabled = true)
        : Reactable(params),
          userActions_(userActions.data()),
          userButtons_(userButtons.data()),
          userButtonCount_(static_cast<int>(userButtons.size())),
          userActionCount_(static_cast<int>(userActions.size())),
          enabled_(enabled ? 1 : 0),
          name_(name) {}

    bool isBehaviorContainer() const override { return true; }
    /// Offers the event to every user button; the answer is the last one that is not false.
    bool afterDispatch(EventId eventId) override;

    /// On a change every user button looks up its action anew.
    void setEnabled(bool enabled);
    bool isEnabled() const { return enabled_ != 0; }
    void tickUserButtons(int elapsedMs);
    /// Null when the container is disabled or the index out of range.
    UserAction* userAction(int index) const;
    const char* objectName() const { return name_ != nullptr ? name_ : "BehaviorContainer"; }

  private:
    std::span<UserButton* const> userButtons() const {
        return {userButtons_, static_cast<std::size_t>(userButtonCount_)};
    }

    UserAction* const* userActions_;
    UserButton* const* userButtons_;
    int userButtonCount_;
    int userActionCount_;
    std::uint16_t enabled_;
    const char* name_;
};

}  // namespace Engine
