#pragma once

#include "backend/access.h"
#include "backend/availableflag.h"
#include "backend/enumtype.h"
#include "backend/limitconfig.h"
#include "embedded-gui-engine/enumvariable.h"

namespace Backend::Variable {

template <typename T>
class Enum;

/// One value of a table of values.
///
/// A write of a value that the table doesn't hold, or outside the limits, is refused and changes nothing. The server
/// may set any value; a negative one means not set. Where `properties` and `textKey` take an item they take the value,
/// which for tables 0, 1, 2 ... is the place too.
template <>
class Enum<int> : public Access<int>, public LimitConfig<int>, public Engine::EnumVariable {
  public:
    /// Number of values in the table.
    int size() const override;
    bool setValue(int value) override;
    /// Goes `step` values on among those that may be chosen (existing, enabled and inside the limits). Stays at the
    /// first or last, or with `wrap` goes on from the other end; refused only when nothing may be chosen.
    bool increment(int step, bool wrap) override;
    const char* name() const override;
    int value() const override;
    int flags() const override;
    /// 0 for what the table doesn't hold or doesn't offer.
    int properties(int value) const override;
    /// No text for what the table doesn't hold.
    Engine::TextId textKey(int value) const override;

    void configType(EnumTable const* type) { type_ = type; }
    void configAvailability(AvailableFlag* availability) { availability_ = availability; }
    EnumTable const* type() const { return type_; }

    /// The availability bits have a new message: a change of them is told like a change of the value.
    void refreshAvailability();

  protected:
    constexpr explicit Enum(const char* name, Slot slot = noSlot, EnumTable const* type = nullptr,
                            AvailableFlag* availability = nullptr)
        : Access<int>(name, slot), type_(type), availability_(availability) {}
    ~Enum() = default;

  private:
    bool selectable(unsigned int index) const;
    unsigned int selectableCount() const;
    unsigned int following(unsigned int index, int direction, bool wrap) const;
    int propertiesOfEntry(unsigned int index) const;

    EnumTable const* type_;
    AvailableFlag* availability_;
};

}  // namespace Backend::Variable
