#pragma once

#include <array>
#include <cstdint>

#include "embedded-gui-engine/eventmatcher.h"

namespace Engine {

/// The events that none of a reactable's matchers matches, learnt one by one. A matcher's answer depends on the event
/// alone and the model's matchers never change, so what a full scan found stays true.
class Deafness {
  public:
    constexpr Deafness() = default;

    bool isDeafTo(EventId eventId) const {
        return eventId < Events && (words_[eventId / 64] >> eventId % 64 & 1) != 0;
    }
    void learn(EventId eventId) {
        if (eventId < Events) words_[eventId / 64] |= std::uint64_t{1} << eventId % 64;
    }

  private:
    static constexpr EventId Events = 512;  ///< ids from here up are scanned each time

    std::array<std::uint64_t, Events / 64> words_{};
};

}  // namespace Engine
