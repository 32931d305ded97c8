#pragma once

#include "embedded-gui-engine/valueprovider.h"

namespace Engine {

/// A table as the widgets read it that show its rows. It may change between two calls: whoever walks over it asks for
/// the row count at each step and takes what stands there.
class TableSource {
  public:
    /// Live rows; never more than the table has room for.
    virtual unsigned int rowCount() const = 0;
    // The cell at a place; null outside of the table and for a column of another kind.
    virtual const ValueProvider<int>* intCell(unsigned int column, unsigned int row) const = 0;
    virtual const ValueProvider<float>* floatCell(unsigned int column, unsigned int row) const = 0;
    virtual const ValueProvider<const char*>* textCell(unsigned int column, unsigned int row) const = 0;

    // The same as values: 0 or null where there is no cell.
    int intAt(unsigned int column, unsigned int row) const { return valueOf(intCell(column, row)); }
    float floatAt(unsigned int column, unsigned int row) const { return valueOf(floatCell(column, row)); }
    const char* textAt(unsigned int column, unsigned int row) const { return valueOf(textCell(column, row)); }

  protected:
    constexpr TableSource() = default;
    ~TableSource() = default;

  private:
    template <typename T>
    static T valueOf(const ValueProvider<T>* cell) {
        return cell != nullptr ? cell->value() : T{};
    }
};

}  // namespace Engine
