#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "tools/catalogc/catalogue.h"

/// A variable object: a value of its own, or the cell of a table.
struct Variable {
    ValueKind kind = ValueKind::None;
    const Value* value = nullptr;  ///< null for a cell
    const Table* table = nullptr;  ///< null for a value
    unsigned column = 0;
    unsigned row = 0;
    unsigned slot = 0;   ///< place in the sync pass
    unsigned index = 0;  ///< place in the array of its kind

    const Field& field() const { return table->fields[column]; }
    /// The cells of a column share their name, TABLE.Field.
    std::string name() const { return value != nullptr ? value->name : table->name + "." + field().name; }
    unsigned size() const { return value != nullptr ? value->size : field().size; }
    int enumType() const { return value != nullptr ? value->enumType : field().enumType; }
};

/// The variable objects of the program: in slots by name (bytes compare), a table's cells at the table's name by record
/// and column; in one array a kind, in slot order. Tables come after all variables.
class Layout {
  public:
    explicit Layout(const Catalogue& catalogue);

    const Catalogue& catalogue() const { return catalogue_; }
    const std::vector<Variable>& variables() const { return variables_; }  ///< by slot
    /// The array of a kind, in order.
    const std::vector<const Variable*>& array(ValueKind kind) const;
    const std::vector<const Table*>& tables() const { return tables_; }  ///< in name order

    /// Null for an unknown name. A bare motor is its State, a bare lens table its TableActive.
    const Variable* find(const std::string& name) const;
    const Variable* findCell(const Table& table, unsigned column, unsigned row) const;
    std::optional<unsigned> tableIndex(const std::string& name) const;
    /// How many variables of a column's array lie between the cells of two records.
    static unsigned cellStep(const Table& table, unsigned column);

  private:
    void place(Variable variable);

    const Catalogue& catalogue_;
    std::vector<const Table*> tables_;
    std::vector<Variable> variables_;
    std::array<unsigned, 5> counts_ = {};
    std::array<std::vector<const Variable*>, 5> arrays_;
};

/// The C++ expression of a variable's object, as "ints[12]".
std::string objectOf(const Variable& variable);
/// The name of a kind's array and of its type.
const char* arrayName(ValueKind kind);
const char* typeName(ValueKind kind);
/// A name as an identifier: a point becomes an underscore.
std::string identifier(const std::string& name);
