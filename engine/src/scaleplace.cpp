#include "embedded-gui-engine/scaleplace.h"

#include <algorithm>
#include <limits>

#include "embedded-gui-engine/scalerow.h"
#include "embedded-gui-engine/tablesource.h"

namespace Engine {

namespace {

constexpr unsigned int valueColumn = 2;

struct Mark {
    float reciprocal;  ///< of the value
    double axis;
};

Mark markOf(const TableSource& table, unsigned int row) {
    return {1 / table.floatAt(valueColumn, row), static_cast<double>(ScaleRow::axisPositionOf(table, row))};
}

}  // namespace

float ScalePlace::value() const {
    constexpr float nowhere = std::numeric_limits<float>::quiet_NaN();
    const unsigned int rows = table_ != nullptr ? table_->rowCount() : 0;
    const float wanted = source_ != nullptr ? source_->value() : 0;
    if (rows < 2 || !(wanted > 0)) return nowhere;
    const Mark first = markOf(*table_, 0);
    const Mark last = markOf(*table_, rows - 1);
    if (first.axis == last.axis) return nowhere;
    const bool falls = first.reciprocal > last.reciprocal;
    const float at = 1 / wanted;
    const auto liesBeyond = [&](const Mark& mark) { return falls ? at < mark.reciprocal : at > mark.reciprocal; };
    Mark below = first;
    for (unsigned int row = 1; row < rows; ++row) {
        const Mark above = markOf(*table_, row);
        if (liesBeyond(above) && row + 1 < rows) {
            below = above;
            continue;
        }
        const float span = above.reciprocal - below.reciprocal;
        const float part = span != 0 ? std::clamp((at - below.reciprocal) / span, 0.0F, 1.0F) : 0.0F;
        const double axis = below.axis + (above.axis - below.axis) * static_cast<double>(part);
        return static_cast<float>((axis - first.axis) / (last.axis - first.axis));
    }
    return nowhere;
}

}  // namespace Engine
