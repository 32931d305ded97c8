#pragma once

#include <algorithm>
#include <chrono>

namespace Unit {

/// Lets through `perSecond` on the long run, and up to `burst` at once.
class RateLimit {
  public:
    using Time = std::chrono::steady_clock::time_point;

    constexpr RateLimit(double perSecond, double burst) : perSecond_(perSecond), burst_(burst), left_(burst) {}

    /// Whether one more may pass at `now`, which does not run backwards.
    bool pass(Time now) {
        if (last_ != Time{})
            left_ = std::min(burst_, left_ + std::chrono::duration<double>(now - last_).count() * perSecond_);
        last_ = now;
        if (left_ < 1) return false;
        left_ -= 1;
        return true;
    }

  private:
    double perSecond_;
    double burst_;
    double left_;
    Time last_{};
};

}  // namespace Unit
