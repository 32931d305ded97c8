#pragma once

#include <algorithm>

#include "embedded-gui-engine/tablesource.h"

namespace Engine {

/// A backend's table as a TableSource. `Array` has `rowDimension`, the live rows, `rowSize`, the room, and the getters
/// of cells by kind.
template <typename Array>
class ArrayTableSource final : public TableSource {
  public:
    /// Not owned, not null.
    constexpr explicit ArrayTableSource(const Array* array) : array_(array) {}

    unsigned int rowCount() const override { return std::min<unsigned int>(array_->rowDimension(), array_->rowSize()); }
    const ValueProvider<int>* intCell(unsigned int column, unsigned int row) const override {
        return array_->getIntVariable(column, row);
    }
    const ValueProvider<float>* floatCell(unsigned int column, unsigned int row) const override {
        return array_->getFloatVariable(column, row);
    }
    const ValueProvider<const char*>* textCell(unsigned int column, unsigned int row) const override {
        return array_->getStringVariable(column, row);
    }

  private:
    const Array* array_;
};

}  // namespace Engine
