#pragma once

#include <limits>

#include "backend/readaccess.h"

namespace Backend::Variable {

/// A minimum and a maximum, T int or float. Each is read when it is asked for, so a limit may move at run time; a value
/// that a moving limit has left behind stays as it is. Without a source a limit is the end of T's range.
template <typename T>
class LimitConfig {
  public:
    LimitConfig(const LimitConfig&) = delete;
    LimitConfig& operator=(const LimitConfig&) = delete;

    /// Either may be null. Both must outlive this.
    void configLimits(const IReadAccess<T>* minimum, const IReadAccess<T>* maximum) {
        minimum_ = minimum;
        maximum_ = maximum;
    }
    T lowerLimit() const { return read(minimum_, std::numeric_limits<T>::lowest()); }
    T upperLimit() const { return read(maximum_, std::numeric_limits<T>::max()); }
    bool limited() const { return minimum_ != nullptr || maximum_ != nullptr; }
    /// Where limits stand, a NaN is outside of them.
    bool withinLimits(T value) const { return !limited() || (value >= lowerLimit() && value <= upperLimit()); }

  protected:
    constexpr LimitConfig() = default;
    constexpr LimitConfig(const IReadAccess<T>* minimum, const IReadAccess<T>* maximum)
        : minimum_(minimum), maximum_(maximum) {}
    ~LimitConfig() = default;

    /// Where `value` + `step` comes to rest: inside the limits, or with `wrap` at the other end once past one.
    /// `Wide` holds every sum of two T.
    template <typename Wide>
    T stepped(T value, T step, bool wrap) const {
        const T lower = lowerLimit();
        const T upper = upperLimit();
        const Wide target = static_cast<Wide>(value) + static_cast<Wide>(step);
        if (target > static_cast<Wide>(upper)) return wrap ? lower : upper;
        if (target < static_cast<Wide>(lower)) return wrap ? upper : lower;
        return static_cast<T>(target);
    }

  private:
    static T read(const IReadAccess<T>* source, T otherwise) {
        if (source != nullptr) source->getValue(otherwise);
        return otherwise;
    }

    const IReadAccess<T>* minimum_ = nullptr;
    const IReadAccess<T>* maximum_ = nullptr;
};

}  // namespace Backend::Variable
