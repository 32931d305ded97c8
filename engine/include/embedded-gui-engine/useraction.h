#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/reactionee.h"

namespace Engine {

class Action;

struct UserActionParams {
    std::span<Action* const> pressActions = {};
    std::span<Action* const> releaseActions = {};
    std::span<Action* const> selectActions = {};
    std::span<Action* const> deselectActions = {};
    bool enabled = true;
    bool activeValue = false;      ///< what the button's active variable shows while this function is assigned
    std::uintptr_t modelData = 0;  ///< not used by the engine
};

/// One function that can be assigned to a user button: what happens on press and release, and when the function is
/// assigned to a button and taken from it. The arrays are constant data of the model and may hold null entries.
class UserAction : public Reactionee {
  public:
    constexpr explicit UserAction(const UserActionParams& params)
        : pressActions_(params.pressActions.data()),
          releaseActions_(params.releaseActions.data()),
          selectActions_(params.selectActions.data()),
          deselectActions_(params.deselectActions.data()),
          pressCount_(static_cast<std::uint16_t>(params.pressActions.size())),
          releaseCount_(static_cast<std::uint16_t>(params.releaseActions.size())),
          selectCount_(static_cast<std::uint16_t>(params.selectActions.size())),
          deselectCount_(static_cast<std::uint16_t>(params.deselectActions.size())),
          enabled_(params.enabled),
          activeValue_(params.activeValue),
          modelData_(params.modelData) {}

    bool isEnabled() const override { return enabled_; }
    const char* objectName() const override { return "UserAction"; }

    // Each runs its enabled actions in order, and nothing while this function is disabled.
    void press() const;
    void release() const;
    void select() const;
    void deselect() const;

    /// Stores only; the buttons are not told.
    void setEnabled(bool enabled) { enabled_ = enabled; }
    bool activeValue() const { return activeValue_; }
    std::uintptr_t modelData() const { return modelData_; }

  private:
    Action* const* pressActions_;
    Action* const* releaseActions_;
    Action* const* selectActions_;
    Action* const* deselectActions_;
    std::uint16_t pressCount_;
    std::uint16_t releaseCount_;
    std::uint16_t selectCount_;
    std::uint16_t deselectCount_;
    bool enabled_;
    bool activeValue_;
    std::uintptr_t modelData_;
};

}  // namespace Engine
