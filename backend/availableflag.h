#pragma once

#include "backend/readaccess.h"

namespace Backend::Variable {

/// Bits in a memory area that say which entries of an enum or rows of a table are available: bit i % 8 of byte i / 8
/// for entry i. They are looked at when their message comes (`refresh`), so `available` is a plain read.
class AvailableFlag {
  public:
    /// Which property of an entry the bits stand for.
    enum FlagType : unsigned char { Exists = 1, Enabled = 2, Alternative = 4 };

    constexpr AvailableFlag() = default;
    constexpr AvailableFlag(IReadAccess<unsigned char*> const* bits, unsigned char* inForce, unsigned char* latest,
                            unsigned int bytes, FlagType type)
        : bits_(bits), inForce_(inForce), latest_(latest), bytes_(bytes), type_(type) {}
    AvailableFlag(const AvailableFlag&) = delete;
    AvailableFlag& operator=(const AvailableFlag&) = delete;

    void configAvailableVariables(IReadAccess<unsigned char*> const* bits, unsigned int bytes, FlagType type);
    /// Two caches of `bytes` bytes: the bits in force, and a copy of the area's, which may move under a compare.
    void configAvailableVariableCaches(unsigned char* inForce, unsigned char* latest, unsigned int bytes,
                                       FlagType type);

    /// Puts the bits in force that stand in the area. True when they are others than before.
    bool refresh();
    /// `properties` with this flag's property cleared where the bit of `entry` is clear. An entry without a bit isn't
    /// available.
    int applied(int properties, unsigned int entry) const;

  private:
    IReadAccess<unsigned char*> const* bits_ = nullptr;
    unsigned char* inForce_ = nullptr;
    unsigned char* latest_ = nullptr;
    unsigned int bytes_ = 0;
    FlagType type_ = Exists;
};

}  // namespace Backend::Variable
