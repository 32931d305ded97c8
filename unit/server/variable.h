// Handles of single values for the modules: typed, resolved once. A name that the catalogue does not know, or of
// another kind, ends the program when the module is made: it is a mistake of ours.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <type_traits>

#include "unit/server/store.h"

namespace Unit {

class Variable {
  public:
    std::uint16_t id() const { return cell_.id; }
    const Cell& cell() const { return cell_; }
    /// The notice again, although nothing changed.
    void note() const { store_->note(cell_.id); }

  protected:
    Variable(Store& store, std::string_view name, std::string_view kinds);

    Store* store_;
    Cell cell_;
};

class Flag : public Variable {
  public:
    Flag(Store& store, std::string_view name) : Variable(store, name, "b") {}
    bool get() const { return store_->integer(cell_) != 0; }
    operator bool() const { return get(); }
    void set(bool value) const { store_->setInteger(cell_, value ? 1 : 0); }
    /// Of a request: whether it was set. It is cleared, so that it can be made again.
    bool take() const {
        const bool wanted = get();
        if (wanted) set(false);
        return wanted;
    }
};

/// An int or an enum.
class Number : public Variable {
  public:
    Number(Store& store, std::string_view name) : Variable(store, name, "ie") {}
    std::int32_t get() const { return store_->integer(cell_); }
    /// The nearest value of `low` to `high`: memory may hold anything, and what is reckoned with must have bounds.
    std::int32_t within(std::int32_t low, std::int32_t high) const { return std::clamp(get(), low, high); }
    void set(std::int32_t value) const { store_->setInteger(cell_, value); }

    template <typename Enum>
    requires std::is_enum_v<Enum>
    void set(Enum value) const { set(static_cast<std::int32_t>(value)); }
    template <typename Enum>
    requires std::is_enum_v<Enum>
    bool is(Enum value) const { return get() == static_cast<std::int32_t>(value); }
    /// Of a request that is an enum: the value, which goes back to `idle`.
    std::int32_t take(std::int32_t idle = 0) const {
        const std::int32_t wanted = get();
        set(idle);
        return wanted;
    }
};

class Real : public Variable {
  public:
    Real(Store& store, std::string_view name) : Variable(store, name, "f") {}
    float get() const { return store_->real(cell_); }
    void set(float value) const { store_->setReal(cell_, value); }
};

class Text : public Variable {
  public:
    Text(Store& store, std::string_view name) : Variable(store, name, "s") {}
    std::string get() const { return store_->text(cell_); }
    void set(std::string_view value) const { store_->setText(cell_, value); }
};

/// Which entries exist.
class Mask : public Variable {
  public:
    Mask(Store& store, std::string_view name) : Variable(store, name, "m") {}
    /// Bits 0 to `count` - 1 set, the others clear.
    void setFirst(std::size_t count) const;
};

/// A table's cells by row. Rows are often counted in memory that anybody may spoil: one that the table does not have is
/// its last one.
class Column {
  public:
    /// `field` of `table` ("VarCamSpeedList").
    Column(Store& store, std::string table, std::string field);
    std::size_t rows() const { return rows_; }
    /// What a live count in memory can mean: 0 to `rows`.
    std::size_t live(const Number& count) const {
        return std::min(static_cast<std::size_t>(std::max(count.get(), 0)), rows_);
    }
    void setInteger(std::size_t row, std::int32_t value) const { store_->setInteger(cell(row), value); }
    void setReal(std::size_t row, float value) const { store_->setReal(cell(row), value); }
    void setText(std::size_t row, std::string_view value) const { store_->setText(cell(row), value); }
    std::int32_t integer(std::size_t row) const { return store_->integer(cell(row)); }
    float real(std::size_t row) const { return store_->real(cell(row)); }
    std::string text(std::size_t row) const { return store_->text(cell(row)); }

  private:
    Cell cell(std::size_t row) const;

    Store* store_;
    Cell first_;
    std::size_t stride_;
    std::size_t rows_;
};

}  // namespace Unit
