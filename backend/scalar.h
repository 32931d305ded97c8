#pragma once

#include "backend/access.h"
#include "backend/limitconfig.h"
#include "embedded-gui-engine/scalarvariable.h"

namespace Backend::Variable {

/// A number, T int or float.
///
/// A write outside the limits is refused and changes nothing. `increment` stays within the limits or, with `wrap`, goes
/// on from the other end; it is refused only when the limits leave no value.
template <typename T>
class Scalar : public Access<T>, public Engine::ScalarVariable<T>, public LimitConfig<T> {
  public:
    virtual int size() const;
    bool setValue(T value) override;
    bool increment(T step, bool wrap) override;
    const char* name() const override;
    T value() const override;
    int flags() const override;
    T min() const override;
    T max() const override;

  protected:
    constexpr explicit Scalar(const char* name, Slot slot = noSlot, const IReadAccess<T>* minimum = nullptr,
                              const IReadAccess<T>* maximum = nullptr)
        : Access<T>(name, slot), LimitConfig<T>(minimum, maximum) {}
    ~Scalar() = default;
};

extern template class Scalar<int>;
extern template class Scalar<float>;

}  // namespace Backend::Variable
