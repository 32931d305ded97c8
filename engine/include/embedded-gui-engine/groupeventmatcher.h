#pragma once

#include <cstdint>
#include <span>

#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

/// Matches any of several events; an empty group matches none.
class GroupEventMatcher : public EventMatcher {
  public:
    /// The ids are not copied.
    constexpr explicit GroupEventMatcher(std::span<const EventId> eventIds)
        : eventIds_(eventIds.data()), count_(static_cast<std::uint16_t>(eventIds.size())) {}
    bool matches(EventId eventId) const override;

  private:
    const EventId* eventIds_;
    std::uint16_t count_;
};

}  // namespace Engine
