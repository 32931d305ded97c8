#pragma once

#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

/// A provider that can be written. `setValue` answers false when the value is refused; then nothing changes.
template <typename T>
class VariableBase : public ValueProvider<T> {
  public:
    /// A word of the backend's, handed through uninterpreted.
    virtual int flags() const = 0;
    virtual bool setValue(T value) = 0;

  protected:
    constexpr VariableBase() = default;
    ~VariableBase() = default;
};

/// Bits of `properties` of a flag, an enum value or a table row.
enum Property : int {
    PropertyExists = 1,      ///< exists in the present situation: a row is shown, a value may be chosen
    PropertyEnabled = 2,     ///< enabled, beside PropertyExists
    PropertyAlternative = 4  ///< the alternative enable bit, for list modifiers that are configured for it
};

}  // namespace Engine
