#pragma once

#include <cstdint>

/// A set of enum values, one bit a value.
class EntryMask {
  public:
    static constexpr int size = 16;

    /// Values 0 to `last`.
    static constexpr EntryMask upTo(int last) {
        EntryMask mask;
        mask.bits_ = static_cast<std::uint16_t>((2U << last) - 1);
        return mask;
    }

    /// Fatal (std::runtime_error) for a value that has no bit.
    void set(int entry);
    /// False for a value that has no bit.
    constexpr bool has(int entry) const { return entry >= 0 && entry < size && (bits_ >> entry & 1) != 0; }
    constexpr std::uint16_t bits() const { return bits_; }

  private:
    std::uint16_t bits_ = 0;
};

/// What the unit at hand and what is connected to it can do.
struct UnitAbilities {
    bool fullUnit = false;           ///< a unit with all controls
    bool cinefadeUnit = false;       ///< its hardware can fade
    bool cinefadeAvailable = false;  ///< a fader is connected
    bool nextFeatures = false;       ///< features of the next release are switched on
};

/// Which assignments each control may have.
struct AssignmentFlags {
    EntryMask knob, slider, forcePad;
};

AssignmentFlags assignmentFlags(const UnitAbilities& abilities);

/// Which values the multi-segment display may show, one bit a value.
std::uint32_t multiSegmentFlags(const UnitAbilities& abilities);
