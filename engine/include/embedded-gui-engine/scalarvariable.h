#pragma once

#include "embedded-gui-engine/variablebase.h"

namespace Engine {

/// T is int or float.
template <typename T>
class ScalarVariable : public VariableBase<T> {
  public:
    /// The limits in force; they may move at run time.
    virtual T min() const = 0;
    virtual T max() const = 0;
    /// Stays within the limits; `wrap` goes from one end to the other.
    virtual bool increment(T step, bool wrap) = 0;

  protected:
    constexpr ScalarVariable() = default;
    ~ScalarVariable() = default;
};

}  // namespace Engine
