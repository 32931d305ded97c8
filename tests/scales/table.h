#pragma once

#include <deque>
#include <functional>

#include "embedded-gui-engine/result.h"
#include "embedded-gui-engine/tablesource.h"

namespace ScaleTest {

/// A table that tests fill by hand. Column 0 and 1 are numbers, 2 and 5 floats, 3 and 4 texts; for objects, which have
/// floats there, 3 and 4 are floats too.
class Table : public Engine::TableSource {
  public:
    Table() = default;
    Table(std::initializer_list<int> axis) {
        for (const int position : axis) add(3, position, "0");
    }

    void add(int flags, int axis, const char* main = "", const char* sub = "") {
        rows_.push_back({Engine::Result<int>(flags), Engine::Result<int>(axis), Engine::Result<float>(0),
                         Engine::Result<const char*>(main), Engine::Result<const char*>(sub), Engine::Result<float>(0),
                         Engine::Result<float>(0)});
    }
    void addValue(int axis, float value) {
        add(3, axis);
        rows_.back().value = Engine::Result<float>(value);
    }
    void addObject(int shown, float across, float along) {
        add(shown, 0);
        rows_.back().across = Engine::Result<float>(across);
        rows_.back().along = Engine::Result<float>(along);
    }
    void keep(std::size_t count) {
        while (rows_.size() > count) rows_.pop_back();
    }

    unsigned int rowCount() const override {
        ++counted;
        if (whenCounted) whenCounted();
        return static_cast<unsigned int>(rows_.size());
    }
    const Engine::ValueProvider<int>* intCell(unsigned int column, unsigned int row) const override {
        if (row >= rows_.size() || column > 1) return nullptr;
        return column == 0 ? &rows_[row].flags : &rows_[row].axis;
    }
    const Engine::ValueProvider<float>* floatCell(unsigned int column, unsigned int row) const override {
        if (row >= rows_.size()) return nullptr;
        if (column == 3) return &rows_[row].across;
        return column == 4 ? &rows_[row].along : &rows_[row].value;
    }
    const Engine::ValueProvider<const char*>* textCell(unsigned int column, unsigned int row) const override {
        if (row >= rows_.size() || column < 3 || column > 4) return nullptr;
        return column == 3 ? &rows_[row].main : &rows_[row].sub;
    }

    mutable int counted = 0;  ///< calls of rowCount
    std::function<void()> whenCounted;

  private:
    struct Row {
        Engine::Result<int> flags, axis;
        Engine::Result<float> value;
        Engine::Result<const char*> main, sub;
        Engine::Result<float> across, along;
    };
    std::deque<Row> rows_;
};

}  // namespace ScaleTest
