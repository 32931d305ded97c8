#pragma once

#include <vector>

#include "unit/server/module.h"

namespace Unit {

/// The marks on the lens scales: adding at the reading line, clearing the one near it or all of them.
class Marks final : public Module {
  public:
    explicit Marks(Store& values);

    void factory() override;
    void tick(std::int64_t nanoseconds) override;

  private:
    static constexpr std::size_t markCount = 8;
    static constexpr float noMark = -1;

    struct Axis {
        Axis(Store& values, const std::string& axis, const std::string& clear);
        Real at;
        Flag full, near, add, clear, clearAll;
        std::vector<Real> marks;
        std::vector<Real> absolute;  ///< of focus and iris: what the lens shows at the mark

        void addHere(float shown) const;
        void clearNear() const;
        void clearEvery() const;
        void tick() const;
        const Real* nearest() const;
    };

    void listenTo(Axis& axis);
    float shownAt(const Axis& axis) const;

    std::vector<Axis> axes_;
    Real actFocus_;
    Number actIris_;
};

}  // namespace Unit
