#pragma once

#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

class TableSource;

/// Where a value stands on a scale, as a fraction of it: found between the two rows whose values enclose it. Between
/// rows of values a and b it goes by their reciprocals, as on a ring for distances; so a row that stands for a very far
/// distance, even an infinite one, needs no special case. A value beyond the ends of the scale stands at the nearer
/// end.
class ScalePlace : public ValueProvider<float> {
  public:
    /// Neither is owned; the values of the table's rows must be above 0 and rise or fall all along it.
    constexpr ScalePlace(const TableSource* table, const ValueProvider<float>* source)
        : table_(table), source_(source) {}

    const char* name() const override { return "ScalePlace"; }
    /// NaN, which no indicator shows, for a value that is not above 0, and where the table has fewer than two rows or
    /// no extent.
    float value() const override;

  private:
    const TableSource* table_;
    const ValueProvider<float>* source_;
};

}  // namespace Engine
