#pragma once

#include <cstdint>

namespace Backend {

/// Which slots have a change that their observers have not heard of. A set of numbers below `capacity` with a fast
/// "next one from here": three levels of 64-bit words, a bit of an upper level says that the word below is not empty,
/// so an idle pass reads one word.
class PendingSlots {
  public:
    static constexpr unsigned capacity = 65536;
    static constexpr unsigned none = capacity;

    constexpr PendingSlots() = default;
    PendingSlots(const PendingSlots&) = delete;
    PendingSlots& operator=(const PendingSlots&) = delete;

    void set(unsigned slot);
    void clear(unsigned slot);
    bool contains(unsigned slot) const { return (leaf_[slot / 64] >> slot % 64 & 1) != 0; }
    bool empty() const { return top_ == 0; }
    /// The lowest slot in the set that is not below `from`; `none` when there is none. Sees what was set meanwhile.
    unsigned next(unsigned from) const;

  private:
    std::uint64_t top_ = 0;
    std::uint64_t middle_[capacity / 64 / 64] = {};
    std::uint64_t leaf_[capacity / 64] = {};
};

/// The one set of the process; the slots of all variables and tables share one number space.
PendingSlots& pendingSlots();

}  // namespace Backend
