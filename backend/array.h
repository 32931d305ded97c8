#pragma once

#include "backend/availableflag.h"
#include "backend/nameprovider.h"
#include "backend/readaccess.h"
#include "backend/subject.h"

namespace Backend {

template <typename T>
class Var;

namespace Variable {

enum class CellKind : unsigned char { Flag, Int, Enum, Float, String };

/// One field of a table's records. The cells of a column are `step` variables apart in an array of their kind, since a
/// record's cells of one kind stand side by side.
struct Column {
    CellKind kind;
    /// First cell, a `Var` of the kind.
    union Cells {
        Var<bool>* flags;
        Var<int>* ints;
        Var<GuiType::CEnum<int>>* enums;
        Var<float>* floats;
        Var<char const*>* strings;

        constexpr Cells(Var<bool>* cells) : flags(cells) {}
        constexpr Cells(Var<int>* cells) : ints(cells) {}
        constexpr Cells(Var<GuiType::CEnum<int>>* cells) : enums(cells) {}
        constexpr Cells(Var<float>* cells) : floats(cells) {}
        constexpr Cells(Var<char const*>* cells) : strings(cells) {}
    } cells;
    unsigned short step;
    unsigned short offset;  ///< bytes, within the record in the memory area
    unsigned short size;    ///< bytes
};

/// A table: records of equal fields that lie one behind the other in a memory area. Every field of every record has a
/// variable of its own, its cell. Places are given as (column, row): the field, then the record.
class Array : public Subject, public NameProvider {
  public:
    /// Cell layout and place of the records. `width` is the distance of two records in bytes.
    struct ArrayType {
        Column const* columns;
        unsigned char* const* area;
        unsigned int offset;
        unsigned int width;
    };

    virtual const char* name() const;
    /// The first record in the memory area, null while the area is not open.
    virtual unsigned char* address() const;
    /// Bytes from one record to the next.
    virtual unsigned int width() const;
    /// Records that the table has room for.
    virtual unsigned int rowSize() const;
    /// Fields of a record.
    virtual unsigned int columnSize() const;
    /// Property bits of a record: 0 from the live count up.
    virtual int properties(unsigned int row) const;
    // The cell at a place; null outside of the table and for a column of another kind.
    virtual Var<int>* getIntVariable(unsigned int column, unsigned int row) const;
    virtual Var<float>* getFloatVariable(unsigned int column, unsigned int row) const;
    virtual Var<char const*>* getStringVariable(unsigned int column, unsigned int row) const;

    Var<bool>* getBoolVariable(unsigned int column, unsigned int row) const;
    Var<GuiType::CEnum<int>>* getEnumVariable(unsigned int column, unsigned int row) const;
    /// The same by type: T is bool, int, float, char const* or GuiType::CEnum<int>.
    template <typename T>
    Var<T>* getVariable(unsigned int column, unsigned int row) const;

    /// Live records: the counter's value, held within 0 and the table's room; all records without a counter.
    unsigned int rowDimension() const;
    void configCounter(IReadAccess<unsigned int> const* counter) { counter_ = counter; }
    void configAvailability(AvailableFlag* availability) { availability_ = availability; }
    Column const* columns() const { return type_.columns; }

    /// Takes all cells from the memory area, as a message of the table asks; the table is then out of sync even when no
    /// cell has changed, since readers of the raw records may see a change. Nothing while the area is not open.
    void receive();
    /// The availability bits have a new message.
    void refreshAvailability();
    /// A table is told in two steps: in sync first, then its observers.
    void syncData(bool initial);
    void notifyObserver() { notify(); }

  protected:
    constexpr Array(const char* name, unsigned int columns, unsigned int rows, const ArrayType& type,
                    Slot slot = noSlot, IReadAccess<unsigned int> const* counter = nullptr,
                    AvailableFlag* availability = nullptr)
        : Subject(slot),
          NameProvider(name),
          columnCount_(columns),
          rowCount_(rows),
          type_(type),
          counter_(counter),
          availability_(availability) {}
    ~Array() = default;

  private:
    Column const* columnAt(unsigned int column, unsigned int row, CellKind kind) const;
    void receiveColumn(const Column& column) const;

    unsigned int columnCount_;
    unsigned int rowCount_;
    ArrayType type_;
    IReadAccess<unsigned int> const* counter_;
    AvailableFlag* availability_;
};

template <>
Var<bool>* Array::getVariable<bool>(unsigned int column, unsigned int row) const;
template <>
Var<int>* Array::getVariable<int>(unsigned int column, unsigned int row) const;
template <>
Var<GuiType::CEnum<int>>* Array::getVariable<GuiType::CEnum<int>>(unsigned int column, unsigned int row) const;
template <>
Var<float>* Array::getVariable<float>(unsigned int column, unsigned int row) const;
template <>
Var<char const*>* Array::getVariable<char const*>(unsigned int column, unsigned int row) const;

}  // namespace Variable
}  // namespace Backend
